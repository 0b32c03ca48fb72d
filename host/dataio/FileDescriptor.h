#pragma once

#include "Corvid/Export.h"

#include <string>
#include <utility>

namespace Corvid::DataIO {

/// Owns an open file of the operating system, or borrows one that somebody else closes.
class CORVID_EXPORT FileDescriptor {
public:
    FileDescriptor() noexcept = default;
    FileDescriptor(FileDescriptor&& other) noexcept
        : number_(std::exchange(other.number_, -1)), owned_(other.owned_) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept;
    ~FileDescriptor();

    /// Closes the number when it goes.
    static FileDescriptor owning(int number) noexcept { return {number, true}; }
    /// Leaves the number open, as that of standard input.
    static FileDescriptor borrowing(int number) noexcept { return {number, false}; }

    int number() const noexcept { return number_; }
    bool isOpen() const noexcept { return number_ >= 0; }

private:
    FileDescriptor(int number, bool owned) noexcept : number_(number), owned_(owned) {}

    int number_ = -1;
    bool owned_ = false;
};

/// Throws what the operating system says of the last failed call.
/// @param what  what failed on which file, such as "can't open in.mxf".
/// @throws IOError  always.
[[noreturn]] CORVID_EXPORT void throwSystemError(const std::string& what, int errorNumber);

} // namespace Corvid::DataIO
