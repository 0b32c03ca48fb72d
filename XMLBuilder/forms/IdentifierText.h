#pragma once

#include "XMLBuilder/format/As.h"
#include "XMLBuilder/format/HexBytes.h"
#include "XMLBuilder/reader/strict/ValueCheck.h"
#include "XMLBuilder/reader/values/ValueInput.h"
#include "XMLBuilder/schema/TypeDescription.h"
#include "XMLBuilder/writer/sinks/DocumentSink.h"
#include "host/types/Types.h"
#include "host/xmlutils/XmlText.h"

#include <initializer_list>

namespace Corvid::XMLBuilder::ValueForms {

/// An identifier, in dotted hexadecimal.
struct IdentifierText {
    static constexpr bool fitsAttributes = false;

    template <class T> static void write(DocumentSink& to, const T& value) {
        to.text(DottedText(value));
    }

    template <class T> static ParsedValue parse(ValueInput& from, As<T>) {
        return identifier<T>(from.text());
    }
    /// A clip's identifier may be written as the basic UMID that it extends: what is missing is
    /// zero (SMPTE ST 330).
    static ParsedValue parse(ValueInput& from, As<Types::UMID64>);
    /// Written, but read only where more is known of the property than its element.
    static ParsedValue parse(ValueInput& from, As<Types::LocalTag>);

    template <class T> static bool check(ValueCheck& of, As<T>) {
        return of.identifier(T::fixedSize);
    }
    static bool check(ValueCheck& of, As<Types::UMID64>);

    template <class T> static SimpleType describe(As<T>) { return describe({T::fixedSize}); }
    /// @param sizes  how many bytes there may be.
    static SimpleType describe(std::initializer_list<std::size_t> sizes);

private:
    template <class T> static ParsedValue identifier(const char16_t* text) {
        return give(T(XMLUtils::fromXml(text), Types::dottedHexadecimal));
    }
};

/// The same as the value of an attribute, too.
struct AttributeIdentifier : IdentifierText {
    static constexpr bool fitsAttributes = true;

    static auto attribute(const Types::UUID& value) noexcept { return DottedText(value); }
};

} // namespace Corvid::XMLBuilder::ValueForms
