#include "host/dictionary/AbstractMetaAttributeVisitor.h"
#include "host/dictionary/MetaAttribute.h"
#include "host/dictionary/MisplacedAttribute.h"
#include "host/dictionary/UnknownAttribute.h"

namespace Corvid::MetaMetadata {

AbstractMetaAttributeVisitor::~AbstractMetaAttributeVisitor() = default;
AbstractMetaAttribute::~AbstractMetaAttribute() = default;
MetaAttribute::~MetaAttribute() = default;
MisplacedAttribute::~MisplacedAttribute() = default;
UnknownAttribute::~UnknownAttribute() = default;

void MetaAttribute::accept(AbstractMetaAttributeVisitor& visitor) const { visitor.visit(*this); }
void MisplacedAttribute::accept(AbstractMetaAttributeVisitor& visitor) const {
    visitor.visit(*this);
}
void UnknownAttribute::accept(AbstractMetaAttributeVisitor& visitor) const { visitor.visit(*this); }

} // namespace Corvid::MetaMetadata
