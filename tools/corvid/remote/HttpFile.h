#pragma once

#include "host/base/Templates.h"
#include "host/dataio/FileDescriptor.h"
#include "tools/corvid/remote/HttpTransfer.h"
#include "tools/corvid/remote/RemoteStamp.h"

#include <chrono>
#include <string>
#include <vector>

namespace Corvid::Tool {

// What one remote file may cost.
constexpr std::uint64_t greatestFetch = std::uint64_t{64} * 1024 * 1024; ///< bytes
constexpr unsigned mostRequests = 1000; ///< redirects and repeats included
constexpr unsigned mostRedirects = 5;   ///< of a request
constexpr unsigned mostRepeats = 4;     ///< of a request that fails for the moment
/// What is read first, in bytes, and the longest file that may come whole.
constexpr std::size_t greatestWhole = std::size_t{1024} * 1024;

/// The same as values, so that they can be changed.
struct RemoteLimits {
    std::uint64_t bytes = greatestFetch;
    unsigned requests = mostRequests;
    unsigned repeats = mostRepeats;
    unsigned redirects = mostRedirects;
    std::chrono::milliseconds wait{500}; ///< before the first repeat; doubled for each next one
    std::chrono::seconds longestWait{60};
    std::size_t firstRead = greatestWhole;
    bool mayDownload = false; ///< whether a file may be longer where the server sends no parts
};

/// A file on a server, read in parts with GET (RFC 9110). A change of the file is noticed.
class HttpFile {
public:
    using Bytes = std::vector<unsigned char>;

    /// Reads the first bytes.
    /// @throws IOError  there is no such file, it can't be read, or the server sends no parts; the
    ///                  message has no secrets.
    HttpFile(std::string address, const RemoteLimits& limits);

    /// Without secrets.
    const std::string& name() const noexcept { return name_; }
    std::uint64_t size() const noexcept { return size_; }
    /// By its strong tag; where it has none, by its time of change and a weak tag. Nothing where the
    /// server gives neither tag nor time.
    std::optional<RemoteStamp> stamp() const;
    /// From the beginning of the file.
    const Bytes& firstBytes() const noexcept { return firstBytes_; }
    /// The copy of a file that came whole; not open where it comes in parts.
    DataIO::FileDescriptor& copy() noexcept { return copy_; }

    /// So many bytes, which the file has, from an offset.
    /// @throws IOError  they can't be had, the file was changed, or a limit is reached.
    Bytes read(std::uint64_t offset, std::size_t count);

private:
    class Body;

    HttpHead request(std::uint64_t first, std::uint64_t last, Body& body);
    HttpTransfer::Result follow(std::uint64_t first, std::uint64_t last, Body& body);
    HttpTransfer::Result ask(const std::string& address, std::uint64_t first, std::uint64_t last,
                             Body& body);
    std::string nextAddress(const std::string& from, const std::string& to) const;
    /// Whether it is still the file that was opened.
    void compare(const HttpHead& head) const;
    bool hasStrongTag() const { return opened_.entityTag.substr(0, 1) == "\""; }
    [[noreturn]] void refuse(const HttpTransfer::Result& result, const Body& body) const;
    [[noreturn]] void fail(const std::string& what) const;

    std::string first_;   ///< the address as given
    std::string current_; ///< where redirects have led to
    std::string name_;
    RemoteLimits limits_;
    HttpTransfer transfer_;
    HttpHead opened_; ///< the head of the first answer
    bool isOpen_ = false;
    std::uint64_t size_ = 0;
    Bytes firstBytes_;
    DataIO::FileDescriptor copy_;
    std::uint64_t received_ = 0; ///< bytes
    unsigned requests_ = 0;
};

} // namespace Corvid::Tool
