#include "XMLBuilder/schema/ValueSchema.h"

#include "XMLBuilder/format/CompoundFields.h"
#include "XMLBuilder/format/ValueForms.h"
#include "host/base/Text.h"
#include "host/xmlutils/XmlText.h"

#include <cstddef>
#include <initializer_list>
#include <limits>
#include <string>
#include <type_traits>

namespace Corvid::XMLBuilder {

namespace {

using xercesc::DOMElement;

std::u16string fromAscii(const char* text) {
    return {text, text + std::char_traits<char>::length(text)};
}

template <class Number> std::u16string toText(Number number) {
    return fromAscii(std::to_string(number).c_str());
}

constexpr const XMLCh* basicOrExtendedUmid = u"UMID32or64";

/// The value type that is named like a number, in whose range the others have theirs.
template <class Number> std::u16string integerType() {
    return (std::is_signed_v<Number> ? u"Int" : u"UInt") + toText(8 * sizeof(Number));
}

/// The type of what a part of a compound value holds.
template <class Content> std::u16string contentType() {
    if constexpr (std::is_base_of_v<Types::DataType, Content>) {
        return u"DataStream";
    } else {
        return integerType<Content>();
    }
}

/// Describes each type in the form that it has.
class Describer : ValueForms {
public:
    explicit Describer(SchemaSet& schemas) : schemas_(schemas), types_(schemas.of(Names::types)) {}

    void describeAll() {
#define CORVID_VALUE_TYPE(Class, Id, Form) describe<Types::Class>(u"" #Class, Form{});
#include "host/types/ValueTypes.def"
        describeIdentifier(basicOrExtendedUmid,
                           {Types::UMID32::fixedSize, Types::UMID64::fixedSize});
    }

private:
    DOMElement& restrict(const XMLCh* name, const std::u16string& base) {
        auto& type = types_.define(u"xs:simpleType", name);
        return types_.add(type, u"xs:restriction", {{u"base", base}});
    }

    /// Restricts xs:integer and not xs:unsignedByte and the like, in which some validators refuse
    /// a sign and white space.
    template <class T> void describe(const XMLCh* name, Integer) {
        using Number = std::decay_t<decltype(std::declval<const T&>().value())>;
        if constexpr (std::is_same_v<Number, bool>) {
            types_.add(restrict(name, u"xs:string"), u"xs:pattern", {{u"value", u"[01]"}});
        } else if (integerType<Number>() != name) {
            restrict(name, types_.refer(Names::types, integerType<Number>()));
        } else {
            using Limits = std::numeric_limits<Number>;
            auto& range = restrict(name, u"xs:integer");
            types_.add(range, u"xs:minInclusive", {{u"value", toText(Limits::min())}});
            types_.add(range, u"xs:maxInclusive", {{u"value", toText(Limits::max())}});
        }
    }

    template <class> void describe(const XMLCh* name, PackedVersion) {
        restrict(name, types_.refer(Names::types, integerType<Types::u16>()));
    }

    template <class> void describe(const XMLCh* name, Bytes) { restrict(name, u"xs:hexBinary"); }
    /// A code unit of the narrow text has 8 bits. U+FFFD stands for one that XML can't hold.
    template <class T> void describe(const XMLCh* name, Text) {
        auto& type = restrict(name, u"xs:string");
        if constexpr (std::is_same_v<T, Types::ISO7String>) {
            types_.add(type, u"xs:pattern", {{u"value", u"[\\t\\n\\r -\u00FF\uFFFD]*"}});
        }
    }
    template <class> void describe(const XMLCh* name, CodeUnit) {
        auto& type = restrict(name, u"xs:string");
        types_.add(type, u"xs:maxLength", {{u"value", u"1"}});
        // A character beyond U+FFFF has two code units, but in some validators a length of 1.
        types_.add(type, u"xs:pattern", {{u"value", u"[^\U00010000-\U0010FFFF]?"}});
    }

    /// @param sizes  how many bytes it may have.
    void describeIdentifier(const XMLCh* name, std::initializer_list<std::size_t> sizes) {
        auto& type = restrict(name, u"xs:token");
        for (const std::size_t size : sizes) {
            types_.add(
                type, u"xs:pattern",
                {{u"value", u"[0-9a-fA-F]{2}(\\.[0-9a-fA-F]{2}){" + toText(size - 1) + u"}"}});
        }
    }
    template <class T> void describe(const XMLCh* name, IdentifierText) {
        describeIdentifier(name, {T::fixedSize});
    }
    template <class T> void describe(const XMLCh* name, AttributeIdentifier) {
        describe<T>(name, IdentifierText{});
    }

    /// References are links or sets, collections have a type for each of their properties.
    template <class> void describe(const XMLCh*, ReferenceText) {}
    template <class> void describe(const XMLCh*, Collection) {}

    template <class T> void describe(const XMLCh* name, Compound) {
        auto& type = types_.define(u"xs:complexType", name);
        auto& parts = types_.add(type, u"xs:sequence");
        if constexpr (std::is_same_v<T, Types::RGBALayout>) {
            const std::u16string places = toText(T::placesInXml);
            auto& component = types_.add(
                parts, u"xs:element",
                {{u"name", u"RGBAComponent"}, {u"minOccurs", places}, {u"maxOccurs", places}});
            auto& inner = types_.add(types_.add(component, u"xs:complexType"), u"xs:sequence");
            const std::u16string byte = types_.refer(Names::types, integerType<Types::u8>());
            for (const XMLCh* part : {u"Code", u"Depth"}) {
                types_.add(inner, u"xs:element", {{u"name", part}, {u"type", byte}});
            }
        } else {
            using F = Fields<T>;
            auto& document = schemas_.of(F::names);
            DOMElement* sequence = &parts;
            if (F::wrapper.name != nullptr) {
                const std::u16string wrapper = Names::localPart(F::wrapper.name);
                types_.add(parts, u"xs:element", {{u"ref", types_.refer(F::names, wrapper)}});
                auto& inner =
                    document.add(document.define(u"xs:element", wrapper), u"xs:complexType");
                sequence = &document.add(inner, u"xs:sequence");
            }
            const auto addPart = [&](const auto& field) {
                using Content = typename StoredContent<T, decltype(field.get)>::Type;
                document.add(*sequence, u"xs:element",
                             {{u"name", Names::localPart(field.name)},
                              {u"type", document.refer(Names::types, contentType<Content>())}});
            };
            std::apply([&](const auto&... field) { (addPart(field), ...); }, F::list);
        }
    }

    SchemaSet& schemas_;
    SchemaDocument& types_;
};

} // namespace

void describeValues(SchemaSet& schemas) { Describer(schemas).describeAll(); }

std::u16string schemaTypeOf(Types::Identifiers::Identifier type, SchemaDocument& document) {
    return document.refer(Names::types, fromAscii(Types::Identifiers::typeName(type)));
}

std::u16string schemaTypeOf(Types::Identifiers::Identifier type, const std::u16string& localName,
                            SchemaDocument& document) {
    return type == Types::Identifiers::UMID64 && localName == Names::extendedClipID
               ? document.refer(Names::types, basicOrExtendedUmid)
               : schemaTypeOf(type, document);
}

} // namespace Corvid::XMLBuilder
