#pragma once

#include "tools/corvid/remote/Curl.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace Corvid::Tool {

/// The most bytes of the head of an answer. Servers send some hundred.
constexpr std::size_t longestHead = std::size_t{256} * 1024;

/// What a server says of the bytes that it sends (RFC 9110).
struct HttpHead {
    /// Of a part: the places of its first and last byte, and the length of the whole.
    struct Range {
        std::uint64_t first;
        std::uint64_t last;
        std::uint64_t total;
    };

    long status = 0; ///< 0 where no answer came
    std::optional<Range> range;
    std::optional<std::uint64_t> length; ///< of the body, in bytes
    std::string entityTag;
    std::string lastModified;
    std::string encoding;                 ///< empty for bytes as they are
    std::optional<unsigned> retryAfter;   ///< seconds
    std::optional<std::uint64_t> emptyOf; ///< length of a whole that has no such range
};

/// Gets what a server sends.
class HttpReceiver {
public:
    virtual ~HttpReceiver() = default;

    /// The head has come.
    /// @return whether the body is wanted.
    virtual bool begin(const HttpHead& head) = 0;
    /// A piece of the body.
    /// @return whether more of it is wanted.
    virtual bool take(const unsigned char* bytes, std::size_t count) = 0;
};

/// Asks servers for bytes; connections stay open from one question to the next.
class HttpTransfer {
public:
    struct Result {
        CURLcode code = CURLE_OK;
        HttpHead head;
        std::string redirect;   ///< where the answer leads to; empty where it does not
        bool isRefused = false; ///< the receiver did not want the body, or no more of it
        bool isHeadWhole = false;
    };

    /// @throws IOError  there is no libcurl.
    HttpTransfer();

    /// Asks for the bytes from first to last. Redirects are not followed.
    /// @param ifMatch  the tag that the whole must still have; empty for any.
    Result get(const std::string& address, std::uint64_t first, std::uint64_t last,
               const std::string& ifMatch, HttpReceiver& receiver);

private:
    struct Free {
        void operator()(CURL* handle) const { curl().cleanup(handle); }
    };

    std::unique_ptr<CURL, Free> handle_;
};

} // namespace Corvid::Tool
