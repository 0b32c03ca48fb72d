#include "XMLBuilder/writer/ToXMLReferenceVisitor.h"

#include "XMLBuilder/writer/ToXMLMetadataSetVisitor.h"
#include "XMLBuilder/writer/writeTargetInstance.h"
#include "host/dictionary/MetaMetadataSet.h"
#include "host/metadata/MetadataSet.h"

namespace Corvid::XMLBuilder {

void ToXMLReferenceVisitor::visit(const Types::StrongReference&) {
    entered_ = walk_->enter(*target_, parent_);
}

void ToXMLReferenceVisitor::visit(const Types::WeakReference& reference) {
    const auto* definition = target_->metaMetadataSet();
    if (definition == nullptr) {
        return;
    }
    const NamespaceMap::NodeName& name = namespaces_->linkNameOf(*definition);
    auto* link = parent_->getOwnerDocument()->createElementNS(name.uri, name.qualified.c_str());
    parent_->appendChild(link);
    namespaces_->insertUnlessPrefixInUse(Names::types);
    writeTargetInstance(reference, link);
}

} // namespace Corvid::XMLBuilder
