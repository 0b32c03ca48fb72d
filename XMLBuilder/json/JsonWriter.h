#pragma once

#include "host/dataio/DataSink.h"
#include "host/xmlutils/Layout.h"

#include <charconv>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace Corvid::XMLBuilder {

/// Writes JSON (RFC 8259) piece by piece, in UTF-8: two blanks for each level up to 40, or nothing
/// between the pieces.
///
/// A character that people can't see, or that drives a terminal, is escaped, and so is "<": the
/// text can be in an element of HTML as it is.
class JsonWriter {
public:
    /// @param sink  borrowed.
    JsonWriter(XMLUtils::Layout layout, DataIO::DataSink& sink)
        : isIndented_(layout == XMLUtils::Layout::indented), sink_(sink) {}
    JsonWriter(const JsonWriter&) = delete;
    JsonWriter& operator=(const JsonWriter&) = delete;

    void beginObject() { begin('{', '}', false); }
    void beginArray() { begin('[', ']', false); }
    /// An object on one line, with all that is in it.
    void beginShortObject() { begin('{', '}', true); }
    /// Ends the object or array that was begun last.
    void end();

    /// Begins a member of an object; its value follows.
    void key(std::string_view name);

    /// @param text  UTF-8; a byte that is not becomes U+FFFD.
    void text(std::string_view text);
    /// Pairs of digits: "0A0B".
    void bytes(const unsigned char* bytes, std::size_t count);
    /// Dotted pairs: "06.0e.2b.34".
    void identifier(const unsigned char* bytes, std::size_t count);
    void boolean(bool value) { word(value ? "true" : "false"); }
    void null() { word("null"); }
    /// A number beyond 2^53 becomes a text: most readers would round it.
    template <class Number> void number(Number number) {
        char digits[21];
        const char* const end = std::to_chars(digits, digits + sizeof digits, number).ptr;
        const std::string_view text(digits, static_cast<std::size_t>(end - digits));
        bool isExact = number <= greatestExact<Number>();
        if constexpr (std::is_signed_v<Number> && sizeof(Number) == sizeof(std::int64_t)) {
            isExact = isExact && number >= -greatestExact<Number>();
        }
        if (isExact) {
            word(text);
        } else {
            this->text(text);
        }
    }

    void member(std::string_view name, std::string_view text) {
        key(name);
        this->text(text);
    }
    /// A text, or null where it is empty.
    void memberOrNull(std::string_view name, std::string_view text);
    /// An identifier, or null.
    /// @param value  a pointer to a type of identifier, or an optional one.
    template <class Maybe> void identifierMember(std::string_view name, const Maybe& value) {
        key(name);
        if (value) {
            identifier(value->rawBuffer(), value->serializedSize());
        } else {
            null();
        }
    }
    template <class Number> void numberMember(std::string_view name, Number number) {
        key(name);
        this->number(number);
    }

    /// Hands over what is left. To be called at the end; the destructor does not.
    void flush();

    /// The greatest number of a type that every reader has as it is; a negative one goes as far.
    template <class Number> static constexpr Number greatestExact() {
        constexpr auto greatest = std::numeric_limits<Number>::max();
        constexpr std::uint64_t exact = std::uint64_t{1} << 53;
        return static_cast<std::uint64_t>(greatest) < exact ? greatest : static_cast<Number>(exact);
    }

private:
    struct Level {
        char end;
        bool isShort;
        bool isEmpty = true;
    };

    void begin(char front, char end, bool isShort);
    void beginValue();
    void word(std::string_view text);
    void separate(const Level& level);
    void quote(std::string_view text);
    void escape(char32_t point);
    void put(std::string_view text);
    void flushIfFull();

    bool isIndented_;
    bool followsKey_ = false;
    DataIO::DataSink& sink_;
    std::vector<Level> open_;
    std::string buffer_;
};

} // namespace Corvid::XMLBuilder
