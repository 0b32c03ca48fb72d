#include "XMLBuilder/writer/ToXMLMetaAttributeVisitor.h"

#include "host/dictionary/MetaAttribute.h"
#include "host/dictionary/MetaElement.h"
#include "host/dictionary/MisplacedAttribute.h"
#include "host/dictionary/UnknownAttribute.h"

namespace Corvid::XMLBuilder {

void ToXMLMetaAttributeVisitor::visit(const MetaMetadata::UnknownAttribute& attribute) {
    kind_ = Kind::unknown;
    localTag_ = attribute.localTag();
}

void ToXMLMetaAttributeVisitor::visit(const MetaMetadata::MisplacedAttribute& attribute) {
    kind_ = Kind::misplaced;
    metaElement_ = &attribute.metaElement();
}

void ToXMLMetaAttributeVisitor::visit(const MetaMetadata::MetaAttribute& attribute) {
    kind_ = Kind::placed;
    metaElement_ = &attribute.metaElement();
    schemaIndex_ = metaElement_->attribute("SchemaIndex");
    required_ = static_cast<int>(attribute.requiredStatus()) <= 1;
}

} // namespace Corvid::XMLBuilder
