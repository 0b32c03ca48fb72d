#include "XMLBuilder/schema/ValueSchema.h"

#include "XMLBuilder/format/NumberText.h"
#include "XMLBuilder/forms/ValueForms.h"

#include <string>

namespace Corvid::XMLBuilder {

namespace {

using xercesc::DOMElement;

constexpr const XMLCh* basicOrExtendedUmid = u"UMID32or64";

/// Defines a type for each value type, as its form describes it.
class Describer {
public:
    explicit Describer(SchemaSet& schemas) : schemas_(schemas), types_(schemas.of(Names::types)) {}

    void describeAll() {
#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    define(u"" #Class, ValueForms::Form::describe(As<Types::Class>{}));
#include "host/types/ValueTypes.def"
        define(basicOrExtendedUmid, ValueForms::IdentifierText::describe(
                                        {Types::UMID32::fixedSize, Types::UMID64::fixedSize}));
    }

private:
    void define(const XMLCh* name, const SimpleType& type) {
        const bool isOfXml = type.base.compare(0, 3, u"xs:") == 0;
        auto& restriction =
            types_.add(types_.define(u"xs:simpleType", name), u"xs:restriction",
                       {{u"base", isOfXml ? type.base : types_.refer(Names::types, type.base)}});
        for (const auto& facet : type.facets) {
            types_.add(restriction, facet.name, {{u"value", facet.value}});
        }
    }

    void define(const XMLCh* name, const CompoundType& type) {
        auto& outer = types_.add(types_.define(u"xs:complexType", name), u"xs:sequence");
        auto& document = schemas_.of(type.names);
        auto& parts = type.wrapper == nullptr ? outer : addWrapper(outer, type, document);
        for (const auto& part : type.parts) {
            document.add(
                parts, u"xs:element",
                {{u"name", part.name}, {u"type", document.refer(Names::types, part.type)}});
        }
    }

    /// The sequence in the element around the parts. One that is there once is an element of its
    /// namespace, as documents have it.
    DOMElement& addWrapper(DOMElement& outer, const CompoundType& type, SchemaDocument& document) {
        const std::u16string name = Names::localPart(type.wrapper);
        DOMElement* wrapper = nullptr;
        if (type.times == 1) {
            types_.add(outer, u"xs:element", {{u"ref", types_.refer(type.names, name)}});
            wrapper = &document.define(u"xs:element", name);
        } else {
            const std::u16string times = DecimalText(type.times).c_str();
            wrapper = &types_.add(outer, u"xs:element",
                                  {{u"name", name}, {u"minOccurs", times}, {u"maxOccurs", times}});
        }
        return document.add(document.add(*wrapper, u"xs:complexType"), u"xs:sequence");
    }

    void define(const XMLCh*, NoType) {}

    SchemaSet& schemas_;
    SchemaDocument& types_;
};

} // namespace

void describeValues(SchemaSet& schemas) { Describer(schemas).describeAll(); }

std::u16string schemaTypeOf(Types::Identifiers::Identifier type, SchemaDocument& document) {
    const std::string name = Types::Identifiers::typeName(type);
    return document.refer(Names::types, std::u16string(name.begin(), name.end()));
}

std::u16string schemaTypeOf(Types::Identifiers::Identifier type, const std::u16string& localName,
                            SchemaDocument& document) {
    return type == Types::Identifiers::UMID64 && localName == Names::extendedClipID
               ? document.refer(Names::types, basicOrExtendedUmid)
               : schemaTypeOf(type, document);
}

} // namespace Corvid::XMLBuilder
