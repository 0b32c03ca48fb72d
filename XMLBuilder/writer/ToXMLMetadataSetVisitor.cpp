#include "XMLBuilder/writer/ToXMLMetadataSetVisitor.h"

#include "XMLBuilder/format/DefinitionName.h"
#include "XMLBuilder/writer/PropertyOrder.h"
#include "XMLBuilder/writer/ToXMLBaseTypeVisitor.h"
#include "XMLBuilder/writer/ToXMLElementVisitor.h"
#include "host/dictionary/MetaElement.h"
#include "host/dictionary/MetaMetadataSet.h"
#include "host/metadata/MetadataSet.h"

#include <algorithm>

namespace Corvid::XMLBuilder {

namespace {

using Metadata::Element;
using Kind = MetaMetadata::AttributeFacts::Kind;

/// The name of an element that becomes an attribute of its set, or null.
const PropertyName* attributeName(const Element& element) {
    const auto* const definition = element.metaAttribute()->facts().definition;
    return definition != nullptr && nameOf(*definition).isWrittenAsAttribute ? &nameOf(*definition)
                                                                             : nullptr;
}

} // namespace

void ToXMLMetadataSetVisitor::visit(const Metadata::MetadataSet& set) {
    if (set.metaMetadataSet() == nullptr) {
        return;
    }
    Properties properties;
    listProperties(set, properties);
    start(set, properties);
    const auto kept = pass_.extensions.find(&set);
    const Properties* const extensions = kept == pass_.extensions.end() ? nullptr : &kept->second;
    ToXMLElementVisitor writer(plan_, pass_, *this, sink_);
    for (const Element* const element : properties) {
        if (element->metaAttribute()->facts().kind == Kind::placed) {
            element->accept(writer);
        } else if (extensions != nullptr && element == extensions->back()) {
            // They are together, where the last of them is.
            sink_.startElement({Names::groups.uri, Names::extensionElements});
            for (const Element* const extension : *extensions) {
                extension->accept(writer);
            }
            sink_.endElement();
        }
    }
    sink_.endElement();
}

void ToXMLMetadataSetVisitor::start(const Metadata::MetadataSet& set,
                                    const Properties& properties) {
    identifiers_.clear();
    for (const Element* const element : properties) {
        const PropertyName* const name = attributeName(*element);
        const auto* const simple =
            name == nullptr ? nullptr : dynamic_cast<const Metadata::SimpleElement*>(element);
        if (simple == nullptr || simple->isSkipped()) {
            continue;
        }
        std::u16string text;
        ToXMLBaseTypeVisitor writer(text);
        simple->value()->accept(writer);
        // A program can give the property a value that is no identifier: it has no place here.
        if (!text.empty()) {
            const auto same =
                std::find_if(identifiers_.begin(), identifiers_.end(), [&](const auto& each) {
                    return each.name->qualified == name->qualified &&
                           each.name->names.uri == std::u16string_view(name->names.uri);
                });
            if (same == identifiers_.end()) {
                identifiers_.push_back({name, std::move(text)});
            } else {
                same->text = std::move(text);
            }
        }
    }
    attributes_.clear();
    for (const auto& [name, text] : identifiers_) {
        attributes_.push_back({{name->names.uri, name->qualified.c_str()}, text});
    }
    const ClassName& name = nameOf(*set.metaMetadataSet());
    sink_.startElement({name.names.uri, name.qualified.c_str()}, attributes_.data(),
                       attributes_.size());
}

} // namespace Corvid::XMLBuilder
