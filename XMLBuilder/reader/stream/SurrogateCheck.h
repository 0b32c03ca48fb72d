#pragma once

#include <cstddef>
#include <string_view>

namespace Corvid::XMLBuilder {

/// Looks for half of a surrogate pair in a document in UTF-16. expat takes any code unit after the
/// first half for the second, and makes another character of both.
class SurrogateCheck {
public:
    explicit SurrogateCheck(bool isBigEndian) noexcept : isBigEndian_(isBigEndian) {}

    /// Goes on with the next bytes of the document.
    /// @return false at a half that is alone; line() and column() are its place then.
    bool goesOn(std::basic_string_view<unsigned char> bytes) noexcept {
        for (const unsigned char byte : bytes) {
            if (!hasFirstByte_) {
                firstByte_ = byte;
                hasFirstByte_ = true;
                continue;
            }
            hasFirstByte_ = false;
            const unsigned second = byte;
            const unsigned unit =
                isBigEndian_ ? firstByte_ << 8U | second : second << 8U | firstByte_;
            const bool isSecondHalf = (unit & 0xFC00U) == 0xDC00U;
            if (isSecondHalf != expectsSecondHalf_) {
                return false;
            }
            expectsSecondHalf_ = (unit & 0xFC00U) == 0xD800U;
            if (unit == '\n') {
                ++line_;
                column_ = 1;
            } else if (!expectsSecondHalf_) {
                ++column_;
            }
        }
        return true;
    }

    std::size_t line() const noexcept { return line_; }     ///< from 1
    std::size_t column() const noexcept { return column_; } ///< from 1, in characters

private:
    bool isBigEndian_;
    bool hasFirstByte_ = false;
    unsigned firstByte_ = 0;
    bool expectsSecondHalf_ = false;
    std::size_t line_ = 1;
    std::size_t column_ = 1;
};

} // namespace Corvid::XMLBuilder
