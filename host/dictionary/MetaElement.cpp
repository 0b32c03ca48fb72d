#include "host/dictionary/MetaCollectionElement.h"

namespace Corvid::MetaMetadata {

// The destructors are here so that each class has one home for its table of virtual functions.
MetaElement::~MetaElement() = default;
MetaCollectionElement::~MetaCollectionElement() = default;

} // namespace Corvid::MetaMetadata
