#include "host/types/Visitors.h"

namespace Corvid::Types::Visitors {

Visitor::~Visitor() = default;
NonConstVisitor::~NonConstVisitor() = default;
NullVisitor::~NullVisitor() = default;

} // namespace Corvid::Types::Visitors
