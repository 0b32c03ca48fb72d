#include "inspection/essence/FieldText.h"

#include "host/dictionary/MetaElement.h"
#include "host/dictionary/RegisterNames.h"
#include "host/metadata/SimpleValue.h"
#include "host/types/Types.h"
#include "inspection/RegisteredName.h"
#include "inspection/essence/ShownText.h"

#include <algorithm>
#include <cstdio>

namespace Corvid::Inspection {

namespace {

/// True for text that a person can read.
bool isReadable(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

struct Words : Types::Visitors::NullVisitor {
    using NullVisitor::visit;
    void visit(const Types::UTF16String& value) override { text = Platform::toUtf8(value.value()); }
    void visit(const Types::ISO7String& value) override {
        text = Platform::toUtf8(Platform::widen(value.value()));
    }
    void visit(const Types::Boolean& value) override { text = value.value() ? "yes" : "no"; }
    void visit(const Types::UInt8& value) override { count(value.value()); }
    void visit(const Types::UInt16& value) override { count(value.value()); }
    void visit(const Types::UInt32& value) override { count(value.value()); }
    void visit(const Types::UInt64& value) override { text = std::to_string(value.value()); }
    void visit(const Types::Int8& value) override { text = std::to_string(value.value()); }
    void visit(const Types::Int16& value) override { text = std::to_string(value.value()); }
    void visit(const Types::Int32& value) override { text = std::to_string(value.value()); }
    void visit(const Types::Int64& value) override { text = std::to_string(value.value()); }
    void visit(const Types::Length& value) override { text = std::to_string(value.value()); }
    void visit(const Types::Position& value) override { text = std::to_string(value.value()); }
    void visit(const Types::Rational& value) override {
        text = std::to_string(value.numerator()) + "/" + std::to_string(value.denominator());
    }
    void visit(const Types::VersionType& value) override {
        text = std::to_string(value.major()) + "." + std::to_string(value.minor());
    }
    void visit(const Types::Timestamp& time) override {
        char line[48];
        const bool isDay = time.hour() == 0 && time.minute() == 0 && time.second() == 0;
        std::snprintf(line, sizeof line, isDay ? "%04d-%02d-%02d" : "%04d-%02d-%02d %02d:%02d:%02d",
                      time.year(), time.month(), time.day(), time.hour(), time.minute(),
                      time.second());
        text = line;
    }
    void visit(const Types::UniversalLabel& label) override {
        text = registeredName(label);
        text = text.empty() ? Platform::toUtf8(label.toString()) : text;
    }
    void visit(const Types::UUID& value) override { text = Platform::toUtf8(value.toString()); }
    void visit(const Types::UMID32& value) override { text = Platform::toUtf8(value.toString()); }
    void visit(const Types::DataStream& value) override {
        const std::string_view bytes(reinterpret_cast<const char*>(value.rawBuffer()),
                                     value.byteCount());
        text = isReadable(bytes) ? std::string(bytes) : "";
    }

    void count(Types::u32 value) {
        number = value;
        text = std::to_string(value);
    }

    std::string text;
    std::optional<Types::u32> number;
};

/// "PSE_Not_tested" is "not tested": the first word only keeps the names of all members apart.
std::string memberText(std::string_view symbol) {
    const auto first = symbol.find('_');
    std::string text(symbol.substr(first == std::string_view::npos ? 0 : first + 1));
    std::replace(text.begin(), text.end(), '_', ' ');
    const auto isUpper = [](char c) { return c >= 'A' && c <= 'Z'; };
    if (text.size() > 1 && isUpper(text[0]) && !isUpper(text[1])) {
        text[0] = static_cast<char>(text[0] - 'A' + 'a');
    }
    return text;
}

/// What the registers call a number; empty where it is just a number.
std::string enumeratedText(const Types::UniversalLabel& property, Types::u32 number) {
    const auto enumeration = MetaMetadata::Registers::enumerationOf(property);
    return enumeration ? memberText(MetaMetadata::Registers::memberOf(*enumeration, number)) : "";
}

} // namespace

std::string fieldText(const Metadata::Element& element) {
    const auto* const value = Metadata::simpleValue(&element);
    if (value == nullptr) {
        return "";
    }
    Words words;
    value->accept(words);
    const auto* const definition = element.definition();
    if (words.number && definition != nullptr) {
        std::string text = enumeratedText(definition->label(), *words.number);
        if (!text.empty()) {
            return text;
        }
    }
    return shown(words.text);
}

} // namespace Corvid::Inspection
