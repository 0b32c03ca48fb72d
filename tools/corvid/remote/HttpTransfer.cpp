#include "tools/corvid/remote/HttpTransfer.h"

#include "Corvid/Version.h"
#include "host/base/Exceptions.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cstdlib>
#include <string_view>

namespace Corvid::Tool {

namespace {

constexpr long secondsToConnect = 30;
/// A connection that brings less for so long counts as cut.
constexpr long leastBytesPerSecond = 4096;
constexpr long secondsOfSilence = 60;
/// Variables that name the certificates to trust, as the command of libcurl reads them.
constexpr std::array authorities = {"CURL_CA_BUNDLE", "SSL_CERT_FILE"};

std::string_view trimmed(std::string_view text) {
    const auto begin = std::min(text.find_first_not_of(" \t\r\n"), text.size());
    const auto end = text.find_last_not_of(" \t\r\n") + 1;
    return text.substr(begin, end > begin ? end - begin : 0);
}

template <class Number> std::optional<Number> numberIn(std::string_view text) {
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number)
                                                                    : std::nullopt;
}

/// "bytes 0-99/1234", or "bytes */1234" where there is no such range.
void readRange(std::string_view text, HttpHead& head) {
    constexpr std::string_view unit = "bytes ";
    const auto dash = text.find('-');
    const auto slash = text.find('/');
    if (text.substr(0, unit.size()) != unit || slash == std::string_view::npos) {
        return;
    }
    const auto total = numberIn<std::uint64_t>(text.substr(slash + 1));
    if (text.substr(unit.size(), slash - unit.size()) == "*") {
        head.emptyOf = total;
        return;
    }
    if (dash == std::string_view::npos || dash > slash) {
        return;
    }
    const auto first = numberIn<std::uint64_t>(text.substr(unit.size(), dash - unit.size()));
    const auto last = numberIn<std::uint64_t>(text.substr(dash + 1, slash - dash - 1));
    if (first && last && total && *first <= *last && *last < *total) {
        head.range = HttpHead::Range{*first, *last, *total};
    }
}

/// Reads one answer. Exceptions don't pass through libcurl, which is C; nothing here throws but for
/// want of memory.
class Answer {
public:
    explicit Answer(HttpReceiver& receiver) : receiver_(receiver) {}

    static std::size_t onHeader(char* text, std::size_t size, std::size_t count, void* self) {
        return static_cast<Answer*>(self)->line({text, size * count}) ? size * count : 0;
    }
    static std::size_t onBody(char* bytes, std::size_t size, std::size_t count, void* self) {
        auto& answer = *static_cast<Answer*>(self);
        answer.isRefused_ =
            !answer.receiver_.take(reinterpret_cast<const unsigned char*>(bytes), size * count);
        return answer.isRefused_ ? 0 : size * count;
    }

    const HttpHead& head() const noexcept { return head_; }
    bool isRefused() const noexcept { return isRefused_; }
    bool isBegun() const noexcept { return isBegun_; }

private:
    bool line(std::string_view text) {
        if (isBegun_) {
            return true; // after the body, which nobody needs
        }
        headSize_ += text.size();
        if (headSize_ > longestHead) {
            return false;
        }
        if (text.substr(0, 5) == "HTTP/") {
            head_ = {};
            head_.status = statusOf(text);
            return true;
        }
        if (trimmed(text).empty()) {
            // An answer of 1xx is followed by another one.
            isBegun_ = head_.status >= 200;
            isRefused_ = isBegun_ && !receiver_.begin(head_);
            return !isRefused_;
        }
        const auto colon = text.find(':');
        if (colon != std::string_view::npos) {
            field(text.substr(0, colon), trimmed(text.substr(colon + 1)));
        }
        return true;
    }

    static long statusOf(std::string_view line) {
        const auto blank = line.find(' ');
        return blank == std::string_view::npos
                   ? 0
                   : numberIn<long>(trimmed(line.substr(blank, 4))).value_or(0);
    }

    void field(std::string_view written, std::string_view value) {
        std::string name(written);
        std::transform(name.begin(), name.end(), name.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        if (name == "content-range") {
            readRange(value, head_);
        } else if (name == "content-length") {
            head_.length = numberIn<std::uint64_t>(value);
        } else if (name == "content-encoding") {
            head_.encoding = value == "identity" ? "" : value;
        } else if (name == "etag") {
            head_.entityTag = value;
        } else if (name == "last-modified") {
            head_.lastModified = value;
        } else if (name == "retry-after") {
            head_.retryAfter = numberIn<unsigned>(value);
        }
    }

    HttpReceiver& receiver_;
    HttpHead head_;
    std::size_t headSize_ = 0;
    bool isRefused_ = false;
    bool isBegun_ = false;
};

/// Lines of a request, which libcurl borrows.
class Lines {
public:
    Lines() = default;
    Lines(const Lines&) = delete;
    Lines& operator=(const Lines&) = delete;
    ~Lines() { curl().freeList(list_); }

    void add(const std::string& line) { list_ = curl().append(list_, line.c_str()); }
    const curl_slist* list() const noexcept { return list_; }

private:
    curl_slist* list_ = nullptr;
};

} // namespace

HttpTransfer::HttpTransfer() : handle_(curl().init()) {
    if (handle_ == nullptr) {
        throw Exceptions::IOError("libcurl does not start", CORVID_HERE);
    }
}

HttpTransfer::Result HttpTransfer::get(const std::string& address, std::uint64_t first,
                                       std::uint64_t last, const std::string& ifMatch,
                                       HttpReceiver& receiver) {
    const Curl& library = curl();
    CURL* const handle = handle_.get();
    Answer answer(receiver);
    Lines lines;
    lines.add("Accept-Encoding: identity");
    if (!ifMatch.empty()) {
        lines.add("If-Match: " + ifMatch);
    }
    const std::string range = std::to_string(first) + "-" + std::to_string(last);
    library.reset(handle);
    library.set(handle, CURLOPT_URL, address.c_str());
    library.set(handle, CURLOPT_RANGE, range.c_str());
    library.set(handle, CURLOPT_HTTPHEADER, lines.list());
    library.set(handle, CURLOPT_USERAGENT, "corvid/" CORVID_VERSION);
    for (const char* const variable : authorities) {
        if (const char* const file = std::getenv(variable); file != nullptr && *file != '\0') {
            library.set(handle, CURLOPT_CAINFO, file);
            break;
        }
    }
    library.set(handle, CURLOPT_NOSIGNAL, 1L);
    library.set(handle, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    library.set(handle, CURLOPT_CONNECTTIMEOUT, secondsToConnect);
    library.set(handle, CURLOPT_LOW_SPEED_LIMIT, leastBytesPerSecond);
    library.set(handle, CURLOPT_LOW_SPEED_TIME, secondsOfSilence);
    library.set(handle, CURLOPT_HEADERFUNCTION, &Answer::onHeader);
    library.set(handle, CURLOPT_HEADERDATA, &answer);
    library.set(handle, CURLOPT_WRITEFUNCTION, &Answer::onBody);
    library.set(handle, CURLOPT_WRITEDATA, &answer);
    Result result;
    result.code = library.perform(handle);
    result.head = answer.head();
    result.isRefused = answer.isRefused();
    result.isHeadWhole = answer.isBegun();
    const char* redirect = nullptr;
    library.get(handle, CURLINFO_REDIRECT_URL, &redirect);
    result.redirect = redirect == nullptr ? "" : redirect;
    return result;
}

} // namespace Corvid::Tool
