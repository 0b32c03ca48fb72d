#include "tools/corvid/remote/HttpFile.h"

#include "host/base/Exceptions.h"
#include "host/dataio/UnnamedFile.h"
#include "tools/corvid/remote/Address.h"

#include <algorithm>
#include <cerrno>
#include <exception>
#include <limits>
#include <thread>
#include <unistd.h>

namespace Corvid::Tool {

namespace {

/// Of a stamp, in bytes: logs are not filled with what servers send.
constexpr std::size_t longestVersion = 1024;

constexpr long wholeFile = 200;
constexpr long partOfFile = 206;
constexpr long forbidden = 403;
constexpr long changed = 412;
constexpr long noSuchRange = 416;

bool isRedirect(long status) {
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

/// What may go well the next time.
bool isForTheMoment(const HttpTransfer::Result& result) {
    const long status = result.head.status;
    if (!result.isHeadWhole && status != 0 && result.code != CURLE_WRITE_ERROR) {
        return true; // cut inside the head
    }
    switch (result.code) {
    case CURLE_OK:
        return status == 408 || status == 429 || status >= 500;
    case CURLE_PARTIAL_FILE:
    case CURLE_GOT_NOTHING:
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_OPERATION_TIMEDOUT:
    case CURLE_HTTP2:
    case CURLE_HTTP2_STREAM:
        return true;
    default:
        return status == 408 || status == 429 || status >= 500;
    }
}

/// What people can do with it.
std::string meaningOf(long status) {
    switch (status) {
    case 401:
        return "the server wants a user and a password (401)";
    case 403:
        return "the server refuses access (403)";
    case 404:
    case 410:
        return "the server has nothing there (" + std::to_string(status) + ")";
    default:
        return "the server answers with status " + std::to_string(status);
    }
}

constexpr const char* instead = "fetch the file and read the copy";
constexpr const char* changedMeanwhile = "it was changed while it was read";

/// @throws IOError  there is no room.
void writeWhole(int file, const unsigned char* bytes, std::size_t count) {
    while (count != 0) {
        const ssize_t n = ::write(file, bytes, count);
        if (n >= 0) {
            bytes += n;
            count -= static_cast<std::size_t>(n);
        } else if (errno != EINTR) {
            DataIO::throwSystemError("can't write the temporary copy of a remote file", errno);
        }
    }
}

} // namespace

/// Takes a part into memory, and a whole file into a file without name.
class HttpFile::Body final : public HttpReceiver {
public:
    /// @param mayBeWhole  whether the server may send all of the file instead of a part.
    Body(const RemoteLimits& limits, bool mayBeWhole, std::uint64_t& received)
        : limits_(limits), mayBeWhole_(mayBeWhole), received_(received) {}

    bool begin(const HttpHead& head) override {
        bytes.clear();
        size = 0;
        kind = Kind::unwanted;
        most_ = most;
        if (isRedirect(head.status)) {
            // What comes with it says the same to people.
            return true;
        }
        if (!head.encoding.empty()) {
            return false;
        }
        if (head.status == partOfFile && head.range) {
            kind = Kind::part;
            most_ = head.range->last - head.range->first + 1;
            return true;
        }
        if (head.status != wholeFile || !mayBeWhole_) {
            return false;
        }
        kind = Kind::whole;
        most_ = limits_.mayDownload ? std::numeric_limits<std::uint64_t>::max() : limits_.firstRead;
        if (head.length.value_or(0) > most_) {
            kind = Kind::tooLong;
            return false;
        }
        copy = DataIO::FileDescriptor();
        return true;
    }

    bool take(const unsigned char* from, std::size_t count) override {
        received_ += count;
        size += count;
        if (size > most_) {
            kind = kind == Kind::whole ? Kind::tooLong : kind;
            return false;
        }
        switch (kind) {
        case Kind::part:
            bytes.insert(bytes.end(), from, from + count);
            break;
        case Kind::whole:
            return keep(from, count);
        default:
            break;
        }
        return received_ <= limits_.bytes;
    }

    enum class Kind : unsigned char {
        unwanted,
        part,
        whole,
        tooLong, ///< whole, but longer than it may be
    };
    Kind kind = Kind::unwanted;
    Bytes bytes; ///< of a part
    std::uint64_t size = 0;
    DataIO::FileDescriptor copy; ///< of the whole
    std::exception_ptr failure;  ///< to make the copy

private:
    /// What is read of a body that nobody wants, so that the connection can be used again.
    static constexpr std::uint64_t most = std::uint64_t{64} * 1024;

    /// Exceptions don't pass through libcurl, which is C.
    bool keep(const unsigned char* from, std::size_t count) noexcept {
        try {
            if (!copy.isOpen()) {
                copy = DataIO::openUnnamedFile();
            }
            writeWhole(copy.number(), from, count);
            return true;
        } catch (...) {
            failure = std::current_exception();
            return false;
        }
    }

    const RemoteLimits& limits_;
    bool mayBeWhole_;
    std::uint64_t most_ = 0;
    std::uint64_t& received_;
};

HttpFile::HttpFile(std::string address, const RemoteLimits& limits)
    : first_(std::move(address)), current_(first_), name_(withoutSecrets(first_)), limits_(limits) {
    Body body(limits_, true, received_);
    opened_ = request(0, limits_.firstRead - 1, body);
    isOpen_ = true;
    if (body.kind == Body::Kind::whole) {
        size_ = body.size;
        // An empty body is no piece of a body.
        copy_ = body.copy.isOpen() ? std::move(body.copy) : DataIO::openUnnamedFile();
    } else if (opened_.range) {
        size_ = opened_.range->total;
        firstBytes_ = std::move(body.bytes);
    }
}

std::optional<RemoteStamp> HttpFile::stamp() const {
    const std::string& tag = opened_.entityTag;
    const std::string& time = opened_.lastModified;
    if (time.size() + tag.size() > longestVersion || (time.empty() && !hasStrongTag())) {
        return std::nullopt;
    }
    return RemoteStamp{size_, hasStrongTag() ? tag : time + (tag.empty() ? "" : " ") + tag};
}

HttpFile::Bytes HttpFile::read(std::uint64_t offset, std::size_t count) {
    Bytes all;
    Body body(limits_, false, received_);
    while (all.size() != count) {
        const std::uint64_t first = offset + all.size();
        compare(request(first, offset + count - 1, body));
        // A server may send less than it was asked for.
        all.insert(all.end(), body.bytes.begin(), body.bytes.end());
    }
    return all;
}

HttpHead HttpFile::request(std::uint64_t first, std::uint64_t last, Body& body) {
    auto wait = limits_.wait;
    for (unsigned attempt = 0;; ++attempt, wait *= 2) {
        const HttpTransfer::Result result = follow(first, last, body);
        const HttpHead& head = result.head;
        bool isCut = false;
        if (result.code == CURLE_OK && result.isHeadWhole && head.range &&
            body.kind == Body::Kind::part) {
            if (head.range->first != first || head.range->last > last) {
                fail("the server sends other bytes than those asked for");
            }
            isCut = body.size != head.range->last - first + 1;
            if (!isCut) {
                return head;
            }
        }
        const bool isEmpty = !isOpen_ && head.status == noSuchRange && head.emptyOf == 0;
        if (isEmpty ||
            (result.code == CURLE_OK && result.isHeadWhole && body.kind == Body::Kind::whole)) {
            return head;
        }
        if (attempt == limits_.repeats || !(isCut || isForTheMoment(result))) {
            refuse(result, body);
        }
        std::this_thread::sleep_for(
            head.retryAfter ? std::min(std::chrono::milliseconds(1000) * *head.retryAfter,
                                       std::chrono::milliseconds(limits_.longestWait))
                            : wait);
    }
}

/// Sends a request to where redirects lead, and back to the first address where the last one is
/// refused: addresses with a signature are good for a while only.
HttpTransfer::Result HttpFile::follow(std::uint64_t first, std::uint64_t last, Body& body) {
    bool wentBack = false;
    std::string address = current_;
    for (unsigned redirects = 0;;) {
        HttpTransfer::Result result = ask(address, first, last, body);
        if (isRedirect(result.head.status)) {
            if (redirects++ == limits_.redirects) {
                fail("more than " + std::to_string(limits_.redirects) + " redirects");
            }
            address = nextAddress(address, result.redirect);
        } else if (result.head.status == forbidden && address != first_ && !wentBack) {
            wentBack = true;
            address = first_;
            redirects = 0;
        } else {
            current_ = std::move(address);
            return result;
        }
    }
}

HttpTransfer::Result HttpFile::ask(const std::string& address, std::uint64_t first,
                                   std::uint64_t last, Body& body) {
    if (requests_++ == limits_.requests) {
        fail("more than " + std::to_string(limits_.requests) + " requests would be needed; " +
             instead);
    }
    return transfer_.get(address, first, last, hasStrongTag() ? opened_.entityTag : "", body);
}

std::string HttpFile::nextAddress(const std::string& from, const std::string& to) const {
    if (!isAddress(to)) {
        fail("the server leads to what is no http or https address");
    }
    if (isSecure(from) && !isSecure(to)) {
        fail("the server leads from https to http");
    }
    return withUserOf(from, to);
}

void HttpFile::compare(const HttpHead& head) const {
    if (head.entityTag != opened_.entityTag || head.lastModified != opened_.lastModified ||
        head.range->total != size_) {
        fail(changedMeanwhile);
    }
}

void HttpFile::refuse(const HttpTransfer::Result& result, const Body& body) const {
    const HttpHead& head = result.head;
    if (body.failure) {
        std::rethrow_exception(body.failure);
    }
    if (head.status == changed || (isOpen_ && head.status == noSuchRange)) {
        fail(changedMeanwhile);
    }
    if (body.kind == Body::Kind::tooLong) {
        fail("the server sends no parts of files, and it is longer than " +
             std::to_string(limits_.firstRead) + " bytes; --download reads all of it");
    }
    if (received_ > limits_.bytes && !limits_.mayDownload) {
        fail("more than " + std::to_string(limits_.bytes) + " bytes would be needed; " + instead);
    }
    if (head.status >= 300) {
        fail(meaningOf(head.status));
    }
    if (result.isRefused && body.kind == Body::Kind::part) {
        fail("the server sends more bytes than it says");
    }
    if (head.status != 0 && !head.encoding.empty()) {
        fail("the server sends it compressed, though asked not to");
    }
    if (head.status == partOfFile && !head.range) {
        fail("the server does not say which bytes it sends");
    }
    if (isOpen_ && head.status == wholeFile) {
        fail("the server sends no parts of it any more");
    }
    if (head.status != 0 && head.status != wholeFile && head.status != partOfFile) {
        fail(meaningOf(head.status));
    }
    if (result.code == CURLE_SSL_CACERT_BADFILE) {
        fail("no certificates to trust are found; install ca-certificates, or name a file of some "
             "in SSL_CERT_FILE");
    }
    // libcurl's longer texts may have the address with its secrets.
    fail(result.code == CURLE_OK ? "the answer was cut off" : curl().describe(result.code));
}

void HttpFile::fail(const std::string& what) const {
    throw Exceptions::IOError("can't read " + name_ + ": " + what, CORVID_HERE);
}

} // namespace Corvid::Tool
