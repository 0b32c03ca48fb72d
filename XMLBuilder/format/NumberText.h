#pragma once

#include <charconv>
#include <cstddef>

namespace Corvid::XMLBuilder {

/// A number as plain decimal text, zero-terminated: what a stream in its default state and the
/// classic locale writes, without building one.
class DecimalText {
public:
    template <class Number> explicit DecimalText(Number number) noexcept {
        char digits[capacity];
        const char* end = std::to_chars(digits, digits + capacity, number).ptr;
        size_ = static_cast<std::size_t>(end - digits);
        for (std::size_t i = 0; i != size_; ++i) {
            text_[i] = static_cast<char16_t>(digits[i]);
        }
        text_[size_] = 0;
    }

    const char16_t* c_str() const noexcept { return text_; }
    std::size_t size() const noexcept { return size_; }

private:
    static constexpr std::size_t capacity = 20; ///< the longest: -9223372036854775808

    char16_t text_[capacity + 1];
    std::size_t size_;
};

} // namespace Corvid::XMLBuilder
