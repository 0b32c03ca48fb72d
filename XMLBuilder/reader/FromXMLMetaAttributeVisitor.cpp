#include "XMLBuilder/reader/FromXMLMetaAttributeVisitor.h"

#include "host/dictionary/MetaAttribute.h"
#include "host/dictionary/MetaElement.h"
#include "host/dictionary/MisplacedAttribute.h"
#include "host/dictionary/UnknownAttribute.h"

namespace Corvid::XMLBuilder {

void FromXMLMetaAttributeVisitor::visit(const MetaMetadata::UnknownAttribute&) {
    metaElement_ = nullptr;
    schemaIndex_ = nullptr;
}

void FromXMLMetaAttributeVisitor::visit(const MetaMetadata::MisplacedAttribute& attribute) {
    metaElement_ = &attribute.metaElement();
    schemaIndex_ = nullptr;
}

void FromXMLMetaAttributeVisitor::visit(const MetaMetadata::MetaAttribute& attribute) {
    metaElement_ = &attribute.metaElement();
    schemaIndex_ = metaElement_->attribute("SchemaIndex");
}

} // namespace Corvid::XMLBuilder
