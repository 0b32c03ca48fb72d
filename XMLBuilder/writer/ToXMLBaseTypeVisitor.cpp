#include "XMLBuilder/writer/ToXMLBaseTypeVisitor.h"

#include "XMLBuilder/format/CompoundFields.h"
#include "XMLBuilder/format/NumberText.h"
#include "XMLBuilder/format/ValueForms.h"
#include "host/base/Hex.h"
#include "host/xmlutils/UnicodeString.h"
#include "host/xmlutils/XmlText.h"

#include <type_traits>

namespace Corvid::XMLBuilder {

namespace {

void writeText(DocumentSink& sink, const Utf16Unit* text) { sink.text(XMLUtils::toXml(text)); }

void writeHex(DocumentSink& sink, const Types::DataType& value) {
    sink.text(Hex::encoded<std::u16string>(value.rawBuffer(), value.byteCount(), Hex::upper));
}

template <class Number> void writeNumber(DocumentSink& sink, Number number) {
    const DecimalText text(number);
    sink.text({text.c_str(), text.size()});
}

/// The content of a field of a compound value, by what its accessor gives.
template <class Content> void writeContent(DocumentSink& sink, const Content& content) {
    if constexpr (std::is_base_of_v<Types::DataType, Content>) {
        writeHex(sink, content);
    } else {
        writeNumber(sink, +content); // a byte is a number, never a character
    }
}

template <class Content>
void writeElement(DocumentSink& sink, const Names::Namespace& names, const char16_t* name,
                  const Content& content) {
    sink.startElement({names.uri, name});
    writeContent(sink, content);
    sink.endElement();
}

} // namespace

/// One operation per form of value.
struct ToXMLBaseTypeVisitor::Forms : ValueForms {
    /// Whether an attribute can hold the form; of the others it takes nothing.
    template <class Form>
    static constexpr bool fitsAttributes =
        std::is_same_v<Form, AttributeIdentifier> || std::is_same_v<Form, ReferenceText>;

    template <class T> static void write(ToXMLBaseTypeVisitor& to, const T& value, Integer) {
        writeNumber(*to.sink_, +value.value());
    }

    static void write(ToXMLBaseTypeVisitor& to, const Types::VersionType& value, PackedVersion) {
        writeNumber(*to.sink_, value.major() * 256 + value.minor());
    }

    template <class T> static void write(ToXMLBaseTypeVisitor& to, const T& value, Bytes) {
        writeHex(*to.sink_, value);
    }

    static void write(ToXMLBaseTypeVisitor& to, const Types::UTF16String& value, Text) {
        writeText(*to.sink_, value.value());
    }

    static void write(ToXMLBaseTypeVisitor& to, const Types::ISO7String& value, Text) {
        writeText(*to.sink_, XMLUtils::UnicodeString(value.value()).utf16());
    }

    static void write(ToXMLBaseTypeVisitor& to, const Types::UTF16& value, CodeUnit) {
        const char16_t text[] = {static_cast<char16_t>(value.value()), 0};
        to.sink_->text(text);
    }

    template <class T> static void write(ToXMLBaseTypeVisitor& to, const T& value, IdentifierText) {
        writeText(*to.sink_, value.toString(Types::dottedHexadecimal).c_str());
    }

    static void write(ToXMLBaseTypeVisitor& to, const Types::UUID& value, AttributeIdentifier) {
        writeToEither(to, value.toString(Types::dottedHexadecimal));
    }

    template <class T> static void write(ToXMLBaseTypeVisitor& to, const T& value, ReferenceText) {
        writeToEither(to, value.toString());
    }

    template <class T> static void write(ToXMLBaseTypeVisitor& to, const T& value, Compound) {
        using F = Fields<T>;
        DocumentSink& sink = *to.sink_;
        if (F::wrapper.name != nullptr) {
            sink.startElement({F::names.uri, F::wrapper.name});
        }
        const auto writeField = [&](const auto& field) {
            writeElement(sink, F::names, field.name, field.get(value));
        };
        std::apply([&](const auto&... field) { (writeField(field), ...); }, F::list);
        if (F::wrapper.name != nullptr) {
            sink.endElement();
        }
    }

    /// Always five components: one of zeros ends the layout in a file, but not here, and those
    /// behind the fifth have no place in the format.
    static void write(ToXMLBaseTypeVisitor& to, const Types::RGBALayout& value, Compound) {
        for (Types::u32 i = 0; i != Types::RGBALayout::placesInXml; ++i) {
            const auto component = value.get(i);
            to.sink_->startElement({Names::types.uri, u"types:RGBAComponent"});
            writeElement(*to.sink_, Names::types, u"types:Code", int{component.code});
            writeElement(*to.sink_, Names::types, u"types:Depth", int{component.depth});
            to.sink_->endElement();
        }
    }

    /// The items follow one another with nothing between them.
    template <class T> static void write(ToXMLBaseTypeVisitor& to, const T& value, Collection) {
        for (Types::u32 i = 0; i < value.size(); ++i) {
            value.at(i).accept(to);
        }
    }

private:
    static void writeToEither(ToXMLBaseTypeVisitor& to, const Utf16Text& text) {
        if (to.sink_ != nullptr) {
            writeText(*to.sink_, text.c_str());
        } else {
            *to.attribute_ = XMLUtils::toXml(text);
        }
    }
};

#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    void ToXMLBaseTypeVisitor::visit(const Types::Class& value) {                                  \
        if (sink_ != nullptr || Forms::fitsAttributes<Forms::Form>) {                              \
            Forms::write(*this, value, Forms::Form{});                                             \
        }                                                                                          \
    }
#include "host/types/ValueTypes.def"

} // namespace Corvid::XMLBuilder
