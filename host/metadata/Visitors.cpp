#include "host/metadata/Visitors.h"

namespace Corvid::Metadata::Visitors {

MetadataSetVisitor::~MetadataSetVisitor() = default;
NonConstMetadataSetVisitor::~NonConstMetadataSetVisitor() = default;
ElementVisitor::~ElementVisitor() = default;
NonConstElementVisitor::~NonConstElementVisitor() = default;

} // namespace Corvid::Metadata::Visitors
