#include "host/dictionary/Cells.h"

#include "host/base/Hex.h"

#include <algorithm>
#include <charconv>
#include <iterator>

namespace Corvid::MetaMetadata::Cells {

namespace {

using Types::Identifiers::Identifier;

struct NamedType {
    std::string_view name;
    Identifier type;
};

constexpr NamedType valueTypes[] = {
#define CORVID_VALUE_TYPE(Class, Id, Form) {#Class, Types::Identifiers::Class},
#include "host/types/ValueTypes.def"
};

template <std::size_t Size>
std::optional<std::array<unsigned char, Size>> dottedBytes(std::string_view text) {
    if (text.size() != 3 * Size - 1) {
        return std::nullopt;
    }
    std::array<unsigned char, Size> result{};
    for (std::size_t i = 0; i != Size; ++i) {
        const char* digits = text.data() + 3 * i;
        if (!Hex::decode(digits, &result[i], 1) || (i + 1 != Size && digits[2] != '.')) {
            return std::nullopt;
        }
    }
    return result;
}

constexpr bool isCollection(Identifier type) {
    return type == Types::Identifiers::Array || type == Types::Identifiers::Batch;
}

/// The types that a value can have. DataValue is none: no text form of it can be read back, and
/// DataStream holds the same bytes.
std::optional<Identifier> namedType(std::string_view text) {
    for (const NamedType& known : valueTypes) {
        if (known.name == text && known.type != Types::Identifiers::DataValue) {
            return known.type;
        }
    }
    return std::nullopt;
}

bool isLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_'; }
bool isNameCharacter(char c) {
    return isLetter(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
}

} // namespace

std::optional<LabelBytes> label(std::string_view text) { return dottedBytes<16>(text); }

std::optional<std::uint16_t> staticTag(std::string_view text) {
    const auto bytes = dottedBytes<2>(text);
    if (!bytes) {
        return std::nullopt;
    }
    const auto tag = static_cast<std::uint16_t>((*bytes)[0] << 8 | (*bytes)[1]);
    return tag == 0 || tag >= 0x8000 ? std::nullopt : std::optional(tag);
}

std::optional<std::uint32_t> number(std::string_view text) {
    std::uint32_t result = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, result);
    const bool fits = error == std::errc() && stop == end && result != 0 && result <= 0x7FFFFFFF;
    return fits ? std::optional(result) : std::nullopt;
}

std::optional<AttributeRequiredStatus::Status> status(std::string_view text) {
    const auto* const first = std::begin(AttributeRequiredStatus::names);
    const auto* const last = std::end(AttributeRequiredStatus::names);
    const auto* const found = std::find(first, last, text);
    return found == last
               ? std::nullopt
               : std::optional(static_cast<AttributeRequiredStatus::Status>(found - first));
}

std::optional<ValueType> valueType(std::string_view text) {
    const std::size_t open = text.find('(');
    const auto type = namedType(text.substr(0, open));
    if (!type || isCollection(*type) != (open != std::string_view::npos)) {
        return std::nullopt;
    }
    if (open == std::string_view::npos) {
        return ValueType{*type, Identifier{}};
    }
    if (text.back() != ')') {
        return std::nullopt;
    }
    const auto itemType = namedType(text.substr(open + 1, text.size() - open - 2));
    if (!itemType || isCollection(*itemType)) {
        return std::nullopt;
    }
    return ValueType{*type, *itemType};
}

bool isName(std::string_view text) {
    return !text.empty() && isLetter(text.front()) &&
           std::all_of(text.begin(), text.end(), isNameCharacter);
}

bool isUri(std::string_view text) {
    const auto fits = [](char c) {
        return c > ' ' && c < 0x7F &&
               std::string_view("<>\"{}|\\^`").find(c) == std::string_view::npos;
    };
    return text.find(':') != std::string_view::npos && text.front() != ':' &&
           std::all_of(text.begin(), text.end(), fits);
}

} // namespace Corvid::MetaMetadata::Cells
