#include "XMLBuilder/json/JsonValue.h"

#include "XMLBuilder/format/Calendar.h"
#include "XMLBuilder/json/JsonForms.h"

#include <algorithm>
#include <cstdio>
#include <vector>

namespace Corvid::XMLBuilder {

#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    void ToJsonValueVisitor::visit(const Types::Class& value) {                                    \
        JsonForms::Form::write(to_, value, manner_);                                               \
    }
#include "host/types/ValueTypes.def"

void writeHex(JsonWriter& to, Types::ByteView bytes, std::size_t most) {
    to.key("hex");
    to.bytes(bytes.data, std::min(bytes.size, most));
    if (bytes.size > most) {
        to.numberMember("bytes", bytes.size);
    }
}

void writeLabel(JsonWriter& to, const Types::UniversalLabel& label) {
    to.beginShortObject();
    to.key("label");
    to.identifier(label.rawBuffer(), label.serializedSize());
    to.memberOrNull("name", MetaMetadata::Registers::nameOf(label));
    to.end();
}

namespace JsonForms {

namespace {

constexpr bool isLead(Utf16Unit unit) { return (unit & 0xFC00) == 0xD800; }
constexpr bool isTrail(Utf16Unit unit) { return (unit & 0xFC00) == 0xDC00; }

/// Whether every surrogate is one of a pair.
/// @param text  zero-terminated.
bool isUtf16(const Utf16Unit* text) {
    for (; *text != 0; ++text) {
        if (isLead(*text) && isTrail(text[1])) {
            ++text;
        } else if (isLead(*text) || isTrail(*text)) {
            return false;
        }
    }
    return true;
}

/// @param text  zero-terminated.
void writeText(JsonWriter& to, const Utf16Unit* text) {
    if (isUtf16(text)) {
        return to.text(Platform::toUtf8(text));
    }
    std::vector<unsigned char> bytes;
    for (; *text != 0; ++text) {
        bytes.push_back(static_cast<unsigned char>(*text >> 8));
        bytes.push_back(static_cast<unsigned char>(*text));
    }
    to.beginShortObject();
    to.key("utf16");
    to.bytes(bytes.data(), bytes.size());
    to.end();
}

TimeParts partsOf(const Types::Timestamp& time) {
    return std::apply(
        [&](const auto&... field) { return TimeParts{static_cast<unsigned>(field.get(time))...}; },
        Fields<Types::Timestamp>::list);
}

} // namespace

void PackedVersion::write(JsonWriter& to, const Types::VersionType& value, const JsonValueManner&) {
    to.beginShortObject();
    to.numberMember("major", +value.major());
    to.numberMember("minor", +value.minor());
    to.end();
}

void Text::write(JsonWriter& to, const Types::UTF16String& value, const JsonValueManner&) {
    writeText(to, value.value());
}

void Text::write(JsonWriter& to, const Types::ISO7String& value, const JsonValueManner&) {
    writeText(to, Platform::widen(value.value()).c_str());
}

/// A zero, too, is written: it is the value and no terminator.
void CodeUnit::write(JsonWriter& to, const Types::UTF16& value, const JsonValueManner&) {
    const Utf16Unit text[] = {value.value(), 0};
    if (value.value() == 0) {
        constexpr char zero[] = {0};
        to.text({zero, sizeof zero});
    } else {
        writeText(to, text);
    }
}

void IdentifierText::write(JsonWriter& to, const Types::UniversalLabel& value,
                           const JsonValueManner&) {
    writeLabel(to, value);
}

std::string Compound::memberName(std::u16string_view part) {
    std::string name(part.begin(), part.end());
    name[0] = static_cast<char>(name[0] >= 'A' && name[0] <= 'Z' ? name[0] + ('a' - 'A') : name[0]);
    return name;
}

void Compound::write(JsonWriter& to, const Types::Timestamp& value, const JsonValueManner& manner) {
    const TimeParts parts = partsOf(value);
    constexpr unsigned greatestYear = 9999;
    if (calendarFaultOf(parts) || parts[0] > greatestYear) {
        return write<Types::Timestamp>(to, value, manner);
    }
    const auto [year, month, day, hour, minute, second, steps] = parts;
    char text[80];
    std::snprintf(text, sizeof text, "%04u-%02u-%02uT%02u:%02u:%02u.%03u", year, month, day, hour,
                  minute, second, 4 * steps);
    to.text(text);
}

void Compound::write(JsonWriter& to, const Types::RGBALayout& value, const JsonValueManner&) {
    Types::u32 count = Types::RGBALayout::placesInXml;
    while (count != 0 && value.get(count - 1).code == 0 && value.get(count - 1).depth == 0) {
        --count;
    }
    to.beginArray();
    for (Types::u32 i = 0; i != count; ++i) {
        to.beginShortObject();
        to.numberMember("code", +value.get(i).code);
        to.numberMember("depth", +value.get(i).depth);
        to.end();
    }
    to.end();
}

void Collection::write(JsonWriter& to, const Types::Collection& value,
                       const JsonValueManner& manner) {
    ToJsonValueVisitor items(to, manner);
    to.beginArray();
    for (Types::u32 i = 0; i != value.size(); ++i) {
        value.at(i).accept(items);
    }
    to.end();
}

} // namespace JsonForms

} // namespace Corvid::XMLBuilder
