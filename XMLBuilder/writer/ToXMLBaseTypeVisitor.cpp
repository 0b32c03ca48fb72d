#include "XMLBuilder/writer/ToXMLBaseTypeVisitor.h"

#include "XMLBuilder/CompoundFields.h"
#include "XMLBuilder/HexText.h"
#include "XMLBuilder/NumberText.h"
#include "XMLBuilder/ValueForms.h"
#include "host/xmlutils/UnicodeString.h"
#include "host/xmlutils/XmlText.h"

#include <type_traits>

namespace Corvid::XMLBuilder {

namespace {

using xercesc::DOMElement;

void appendText(DOMElement* parent, const XMLCh* text) {
    parent->appendChild(parent->getOwnerDocument()->createTextNode(text));
}

DOMElement* appendChild(DOMElement* parent, const Names::Namespace& names, const XMLCh* name) {
    DOMElement* child = parent->getOwnerDocument()->createElementNS(names.uri, name);
    parent->appendChild(child);
    return child;
}

void appendHex(DOMElement* parent, const Types::DataType& value) {
    appendText(parent, toHexText(value.rawBuffer(), value.byteCount()).c_str());
}

template <class Number> void appendNumber(DOMElement* parent, Number number) {
    appendText(parent, DecimalText(number).c_str());
}

/// The content of a field of a compound value, by what its accessor gives.
template <class Content> void appendContent(DOMElement* parent, const Content& content) {
    if constexpr (std::is_base_of_v<Types::DataType, Content>) {
        appendHex(parent, content);
    } else {
        appendNumber(parent, +content); // a byte is a number, never a character
    }
}

} // namespace

/// One operation per form of value.
struct ToXMLBaseTypeVisitor::Forms : ValueForms {
    /// Whether an attribute can hold the form; of the others it takes nothing.
    template <class Form>
    static constexpr bool fitsAttributes =
        std::is_same_v<Form, AttributeIdentifier> || std::is_same_v<Form, ReferenceText>;

    template <class T> static void write(ToXMLBaseTypeVisitor& to, const T& value, Integer) {
        appendNumber(to.parent_, +value.value());
    }

    static void write(ToXMLBaseTypeVisitor& to, const Types::VersionType& value, PackedVersion) {
        appendNumber(to.parent_, value.major() * 256 + value.minor());
    }

    template <class T> static void write(ToXMLBaseTypeVisitor& to, const T& value, Bytes) {
        appendHex(to.parent_, value);
    }

    static void write(ToXMLBaseTypeVisitor& to, const Types::UTF16String& value, Text) {
        appendText(to.parent_, XMLUtils::toXml(value.value()));
    }

    static void write(ToXMLBaseTypeVisitor& to, const Types::ISO7String& value, Text) {
        appendText(to.parent_, XMLUtils::toXml(XMLUtils::UnicodeString(value.value()).utf16()));
    }

    static void write(ToXMLBaseTypeVisitor& to, const Types::UTF16& value, CodeUnit) {
        const XMLCh text[] = {value.value(), 0};
        appendText(to.parent_, text);
    }

    template <class T> static void write(ToXMLBaseTypeVisitor& to, const T& value, IdentifierText) {
        appendText(to.parent_, XMLUtils::toXml(value.toString(Types::dottedHexadecimal).c_str()));
    }

    static void write(ToXMLBaseTypeVisitor& to, const Types::UUID& value, AttributeIdentifier) {
        writeToEither(to, value.toString(Types::dottedHexadecimal));
    }

    template <class T> static void write(ToXMLBaseTypeVisitor& to, const T& value, ReferenceText) {
        writeToEither(to, value.toString());
    }

    template <class T> static void write(ToXMLBaseTypeVisitor& to, const T& value, Compound) {
        using F = Fields<T>;
        DOMElement* parent = to.parent_;
        if (F::wrapper.name != nullptr) {
            parent = appendChild(parent, F::names, F::wrapper.name);
        }
        const auto writeField = [&](const auto& field) {
            appendContent(appendChild(parent, F::names, field.name), field.get(value));
        };
        std::apply([&](const auto&... field) { (writeField(field), ...); }, F::list);
    }

    /// Always five components: one of zeros ends the layout in a file, but not here, and those
    /// behind the fifth have no place in the format.
    static void write(ToXMLBaseTypeVisitor& to, const Types::RGBALayout& value, Compound) {
        for (Types::u32 i = 0; i != Types::RGBALayout::placesInXml; ++i) {
            const auto component = value.get(i);
            DOMElement* element = appendChild(to.parent_, Names::types, u"types:RGBAComponent");
            appendNumber(appendChild(element, Names::types, u"types:Code"), int{component.code});
            appendNumber(appendChild(element, Names::types, u"types:Depth"), int{component.depth});
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
        if (to.parent_ != nullptr) {
            appendText(to.parent_, XMLUtils::toXml(text.c_str()));
        } else if (to.attribute_ != nullptr) {
            to.attribute_->setValue(XMLUtils::toXml(text.c_str()));
        }
    }
};

ToXMLBaseTypeVisitor::ToXMLBaseTypeVisitor(DOMElement* parent, NamespaceMap* namespaces)
    : parent_(parent) {
    namespaces->insertValueNamespaces();
}

ToXMLBaseTypeVisitor::ToXMLBaseTypeVisitor(xercesc::DOMAttr* attribute) : attribute_(attribute) {}

#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    void ToXMLBaseTypeVisitor::visit(const Types::Class& value) {                                  \
        if (parent_ != nullptr || Forms::fitsAttributes<Forms::Form>) {                            \
            Forms::write(*this, value, Forms::Form{});                                             \
        }                                                                                          \
    }
#include "host/types/ValueTypes.def"

} // namespace Corvid::XMLBuilder
