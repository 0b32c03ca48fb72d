#include "XMLBuilder/schema/ValueSchema.h"

#include "XMLBuilder/format/CompoundFields.h"
#include "XMLBuilder/format/ValueForms.h"
#include "host/base/Text.h"
#include "host/xmlutils/XmlText.h"

#include <limits>
#include <type_traits>

namespace Corvid::XMLBuilder {

namespace {

using xercesc::DOMElement;

std::u16string fromAscii(const char* text) {
    return {text, text + std::char_traits<char>::length(text)};
}

/// The integers of XML Schema have the ranges of the machine's.
template <class Number> constexpr const XMLCh* integerType() {
    constexpr bool isSigned = std::is_signed_v<Number>;
    switch (sizeof(Number)) {
    case 1:
        return isSigned ? u"xs:byte" : u"xs:unsignedByte";
    case 2:
        return isSigned ? u"xs:short" : u"xs:unsignedShort";
    case 4:
        return isSigned ? u"xs:int" : u"xs:unsignedInt";
    default:
        return isSigned ? u"xs:long" : u"xs:unsignedLong";
    }
}

/// The type of what a part of a compound value holds.
template <class Content> constexpr const XMLCh* contentType() {
    if constexpr (std::is_base_of_v<Types::DataType, Content>) {
        return u"xs:hexBinary";
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
    }

private:
    DOMElement& restrict(const XMLCh* name, const std::u16string& base) {
        auto& type = types_.define(u"xs:simpleType", name);
        return types_.add(type, u"xs:restriction", {{u"base", base}});
    }

    template <class T> void describe(const XMLCh* name, Integer) {
        using Number = std::decay_t<decltype(std::declval<const T&>().value())>;
        if constexpr (std::is_same_v<Number, bool>) {
            types_.add(restrict(name, u"xs:string"), u"xs:pattern", {{u"value", u"[01]"}});
        } else {
            restrict(name, integerType<Number>());
        }
    }

    template <class> void describe(const XMLCh* name, PackedVersion) {
        restrict(name, u"xs:unsignedShort");
    }

    template <class> void describe(const XMLCh* name, Bytes) { restrict(name, u"xs:hexBinary"); }
    template <class> void describe(const XMLCh* name, Text) { restrict(name, u"xs:string"); }
    template <class> void describe(const XMLCh* name, CodeUnit) {
        types_.add(restrict(name, u"xs:string"), u"xs:maxLength", {{u"value", u"1"}});
    }

    template <class T> void describe(const XMLCh* name, IdentifierText) {
        const std::u16string count = fromAscii(std::to_string(T::fixedSize - 1).c_str());
        types_.add(restrict(name, u"xs:token"), u"xs:pattern",
                   {{u"value", u"[0-9a-fA-F]{2}(\\.[0-9a-fA-F]{2}){" + count + u"}"}});
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
            const std::u16string places = fromAscii(std::to_string(T::placesInXml).c_str());
            auto& component = types_.add(
                parts, u"xs:element",
                {{u"name", u"RGBAComponent"}, {u"minOccurs", places}, {u"maxOccurs", places}});
            auto& inner = types_.add(types_.add(component, u"xs:complexType"), u"xs:sequence");
            for (const XMLCh* part : {u"Code", u"Depth"}) {
                types_.add(inner, u"xs:element", {{u"name", part}, {u"type", u"xs:unsignedByte"}});
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
                using Content = std::decay_t<decltype(field.get(std::declval<const T&>()))>;
                document.add(
                    *sequence, u"xs:element",
                    {{u"name", Names::localPart(field.name)}, {u"type", contentType<Content>()}});
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

} // namespace Corvid::XMLBuilder
