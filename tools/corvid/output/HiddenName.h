#pragma once

#include <csignal>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace Corvid::Tool {

/// Holds signals back as long as it lives; those that came are delivered then.
class SignalsHeldBack {
public:
    SignalsHeldBack() noexcept;
    SignalsHeldBack(const SignalsHeldBack&) = delete;
    SignalsHeldBack& operator=(const SignalsHeldBack&) = delete;
    ~SignalsHeldBack();

private:
    sigset_t before_;
};

/// How the name of every unfinished file begins.
inline constexpr std::string_view unfinishedName = ".corvid-";

/// The name that an unfinished file has beside its target. The file goes away with the object, and
/// with the process where a signal ends it. Any number of them may be there at once.
class HiddenName {
public:
    HiddenName() = default;
    HiddenName(const HiddenName&) = delete;
    HiddenName& operator=(const HiddenName&) = delete;
    ~HiddenName();

    /// Finds a name that is free.
    /// @param make  makes the file of that name; false with EEXIST in errno where there is one.
    /// @return whether there is a file; errno says why not.
    bool give(const std::filesystem::path& folder, const std::function<bool(const char*)>& make);
    bool isGiven() const noexcept { return !path_.empty(); }

    /// Gives the file its final name, at which another one may be.
    /// @return whether it could be done; errno says why not.
    bool changeTo(const std::string& target) noexcept;

private:
    void removeOnSignal() noexcept;
    void forget() noexcept;
    static void removeAll(int signalNumber);

    std::string path_; ///< empty where there is no file
    HiddenName* next_ = nullptr;
    HiddenName* previous_ = nullptr;
};

} // namespace Corvid::Tool
