#include "XMLBuilder/writer/ToXMLReferenceVisitor.h"

#include "XMLBuilder/format/DefinitionName.h"
#include "XMLBuilder/writer/ToXMLMetadataSetVisitor.h"
#include "XMLBuilder/writer/writeLink.h"
#include "host/dictionary/MetaMetadataSet.h"
#include "host/metadata/MetadataSet.h"

namespace Corvid::XMLBuilder {

void ToXMLReferenceVisitor::visit(const Types::StrongReference&) {
    if (isPlace_) {
        sets_.visit(target_);
    }
}

void ToXMLReferenceVisitor::visit(const Types::WeakReference& reference) {
    if (const auto* const definition = target_.metaMetadataSet()) {
        const ClassName& name = nameOf(*definition);
        writeLink(sink_, {name.names.uri, name.link.c_str()}, reference);
    }
}

} // namespace Corvid::XMLBuilder
