#include "tools/corvid/reports/ValueText.h"

#include "editing/change/DocumentText.h"
#include "host/base/Hex.h"
#include "host/base/Shortened.h"
#include "host/dictionary/MetaElement.h"
#include "host/dictionary/MisplacedAttribute.h"
#include "host/metadata/Elements.h"
#include "host/types/Types.h"
#include "inspection/RegisteredName.h"
#include "tools/corvid/terminal/Printable.h"

#include <cstdio>

namespace Corvid::Tool {

namespace {

constexpr std::size_t longestValue = 200; // in bytes
constexpr Types::u32 mostItems = 8;

/// Text of the values that people write in other ways than documents.
struct Usual : Types::Visitors::NullVisitor {
    using NullVisitor::visit;
    void visit(const Types::UTF16String& text) override { quote(Platform::toUtf8(text.value())); }
    void visit(const Types::ISO7String& text) override {
        quote(Platform::toUtf8(Platform::widen(text.value())));
    }
    void visit(const Types::Rational& rate) override {
        result = std::to_string(rate.numerator()) + "/" + std::to_string(rate.denominator());
    }
    void visit(const Types::Timestamp& time) override {
        char text[40];
        std::snprintf(text, sizeof text, "%04u-%02u-%02u %02u:%02u:%02u.%03u", time.year(),
                      time.month(), time.day(), time.hour(), time.minute(), time.second(),
                      time.milliSecond());
        result = text;
    }
    void visit(const Types::Boolean& value) override {
        result = *value.rawBuffer() == 0 ? "false" : "true";
    }
    void visit(const Types::UniversalLabel& label) override {
        const std::string name = Inspection::registeredName(label);
        const std::string dotted = Platform::toUtf8(label.toString());
        result = name.empty() ? dotted : name + " (" + dotted + ")";
    }

    void quote(const std::string& text) {
        result = '"' + printable(shortened(text, longestValue)) + '"';
    }

    std::string result;
};

std::string textOf(const Types::SimpleDataType& value) {
    Usual usual;
    value.accept(usual);
    if (!usual.result.empty()) {
        return usual.result;
    }
    return shortened(Editing::documentText(value), longestValue);
}

struct ElementText : Metadata::Visitors::ElementVisitor {
    void visit(const Metadata::ReferenceBatchElement& element) override { list(element); }
    void visit(const Metadata::ReferenceArrayElement& element) override { list(element); }
    void visit(const Metadata::ReferenceElement& element) override {
        result = Platform::toUtf8(element.value()->toString());
    }
    void visit(const Metadata::BatchElement& element) override { list(*element.value()); }
    void visit(const Metadata::ArrayElement& element) override { list(*element.value()); }
    void visit(const Metadata::SimpleElement& element) override {
        result = textOf(*element.value());
    }

    static std::string itemText(const Types::SimpleDataType& item) { return textOf(item); }
    static std::string itemText(const Types::Reference& item) {
        return Platform::toUtf8(item.toString());
    }

    template <class Items> void list(const Items& items) {
        const Types::u32 count = items.size();
        result = "[";
        for (Types::u32 i = 0; i != count && i != mostItems; ++i) {
            result += (i == 0 ? "" : ", ") + itemText(items.at(i));
        }
        result += (count > mostItems ? " and " + std::to_string(count - mostItems) + " more" : "") +
                  std::string("]");
    }

    std::string result;
};

std::string hexText(Types::ByteView bytes) {
    if (bytes.size == 0) {
        return "no bytes";
    }
    const std::size_t shown = std::min(bytes.size, longestValue / 2);
    return Hex::encoded<std::string>(bytes.data, shown, Hex::lower) +
           (shown < bytes.size ? "..." : "");
}

} // namespace

std::string valueText(const std::optional<Types::UniversalLabel>& label, Types::ByteView bytes,
                      const MetaMetadata::Dictionary& dictionary) {
    const auto* const definition = label ? dictionary.findElement(*label) : nullptr;
    if (definition == nullptr) {
        return hexText(bytes);
    }
    const auto element = Metadata::createElement(
        Metadata::Element::Attribute(new MetaMetadata::MisplacedAttribute(*definition)));
    if (!element->parse(bytes) || element->isSkipped()) {
        return hexText(bytes);
    }
    ElementText text;
    element->accept(text);
    return text.result;
}

} // namespace Corvid::Tool
