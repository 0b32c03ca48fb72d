#include "XMLBuilder/schema/ClassSchema.h"

#include "XMLBuilder/format/DefinitionName.h"
#include "XMLBuilder/schema/FrameSchema.h"
#include "XMLBuilder/schema/ValueSchema.h"
#include "host/dictionary/Dictionary.h"
#include "host/xmlutils/XmlText.h"

#include <algorithm>
#include <set>

namespace Corvid::XMLBuilder {

namespace {

namespace Identifiers = Types::Identifiers;
using MetaMetadata::MetaElement;
using MetaMetadata::MetaMetadataSet;
using xercesc::DOMElement;

/// Of the properties that are attributes of their set, InstanceUID is the one that every set has.
bool isInstanceUID(const DefinitionName& name) { return name.qualified == Names::instanceUID; }

bool isReference(Identifiers::Identifier type) {
    return type == Identifiers::StrongReference || type == Identifiers::WeakReference;
}

std::u16string toText(const Utf16Text& text) { return XMLUtils::toXml(text); }

std::u16string describeProperty(const MetaElement& property) {
    const auto encoding = Types::dottedHexadecimal;
    std::u16string text = toText(property.label().toString(encoding));
    if (property.staticLocalTag() != 0) {
        text +=
            u", local tag " + toText(Types::LocalTag(property.staticLocalTag()).toString(encoding));
    }
    return text;
}

void addProperty(SchemaDocument& document, const PropertyName& name) {
    const MetaElement& property = name.definition;
    const Identifiers::Identifier type = property.dataType();
    const Identifiers::Identifier itemType =
        property.isCollection()
            ? static_cast<const MetaMetadata::MetaCollectionElement&>(property).dataSubType()
            : type;
    if (name.isWrittenAsAttribute) {
        document.define(u"xs:attribute", name.local.text,
                        {{u"type", schemaTypeOf(type, document)}});
        return;
    }
    auto& element = document.define(u"xs:element", name.local.text);
    document.annotate(element, describeProperty(property));
    if (isReference(itemType)) {
        const auto reference = document.refer(
            Names::groups, property.isCollection() ? Frame::references : Frame::reference);
        element.setAttribute(u"type", reference.c_str());
    } else if (!property.isCollection()) {
        element.setAttribute(u"type", schemaTypeOf(type, name.local.text, document).c_str());
    } else {
        auto& items = document.add(document.add(element, u"xs:complexType"), u"xs:sequence");
        document.add(items, u"xs:element",
                     {{u"name", u"Element"},
                      {u"type", schemaTypeOf(itemType, document)},
                      {u"minOccurs", u"0"},
                      {u"maxOccurs", u"unbounded"}});
    }
}

/// The properties of a set's type, and which of them its ancestor's brings along.
struct TypeContent {
    explicit TypeContent(const ClassName& name) : properties(name.properties().inDocuments) {
        // Xerces-C loses the ancestor's part where a type extends one of a namespace that imports
        // its own.
        const MetaMetadataSet* const parent = name.definition.parent();
        if (parent == nullptr || std::u16string_view(name.names.uri) != nameOf(*parent).names.uri) {
            return;
        }
        // What extends a type comes after all that it has, so the ancestor's must come first.
        const auto& before = nameOf(*parent).properties().inDocuments;
        if (before.size() <= properties.size() &&
            std::equal(before.begin(), before.end(), properties.begin())) {
            base = &nameOf(*parent);
            inherited = before.size();
        }
    }

    const std::vector<const PropertyName*>& properties;
    const ClassName* base = nullptr;
    std::size_t inherited = 0;
};

void addType(SchemaDocument& document, const ClassName& name) {
    const TypeContent content(name);
    DOMElement* type = &document.define(u"xs:complexType", name.local.text);
    document.annotate(*type,
                      u"set " + toText(name.definition.key().toString(Types::dottedHexadecimal)));
    if (content.base != nullptr) {
        type = &document.add(
            document.add(*type, u"xs:complexContent"), u"xs:extension",
            {{u"base", document.refer(content.base->names, content.base->local.text)}});
    }
    auto& sequence = document.add(*type, u"xs:sequence");
    if (content.base == nullptr) {
        document.add(
            sequence, u"xs:element",
            {{u"ref", document.refer(Names::groups, Frame::extensions)}, {u"minOccurs", u"0"}});
    }
    const auto begin = content.properties.begin() + static_cast<std::ptrdiff_t>(content.inherited);
    for (auto property = begin; property != content.properties.end(); ++property) {
        const PropertyName& each = **property;
        const std::u16string reference = document.refer(each.names, each.local.text);
        if (each.isWrittenAsAttribute) {
            document.add(
                *type, u"xs:attribute",
                {{u"ref", reference}, {u"use", isInstanceUID(each) ? u"required" : u"optional"}});
        } else {
            document.add(sequence, u"xs:element", {{u"ref", reference}, {u"minOccurs", u"0"}});
        }
    }
}

} // namespace

void describeProperties(SchemaSet& schemas, const MetaMetadata::Dictionary& dictionary) {
    for (auto i = dictionary.metaElementBegin(); i != dictionary.metaElementEnd(); ++i) {
        const PropertyName& name = nameOf(**i);
        addProperty(schemas.of(name.names), name);
    }
}

void describeSets(SchemaSet& schemas, const MetaMetadata::Dictionary& dictionary) {
    std::set<std::u16string> uris;
    for (auto i = dictionary.metaMetadataSetBegin(); i != dictionary.metaMetadataSetEnd(); ++i) {
        const ClassName& name = nameOf(**i);
        auto& document = schemas.of(name.names);
        const std::u16string link = document.refer(Names::groups, Frame::link);
        addType(document, name);
        document.define(u"xs:element", name.local.text,
                        {{u"type", document.refer(name.names, name.local.text)}});
        document.define(u"xs:element", Names::localPart(name.link.c_str()), {{u"type", link}});
        if (uris.insert(name.names.uri).second) {
            document.define(u"xs:element", Names::ambiguousLink, {{u"type", link}});
        }
    }
}

} // namespace Corvid::XMLBuilder
