#pragma once

#include "Corvid/Export.h"

namespace Corvid::MetaMetadata {

class MetaAttribute;
class MisplacedAttribute;
class UnknownAttribute;

/// Tells the kinds of AbstractMetaAttribute apart.
class CORVID_EXPORT AbstractMetaAttributeVisitor {
public:
    virtual ~AbstractMetaAttributeVisitor();
    virtual void visit(const UnknownAttribute& attribute) = 0;
    virtual void visit(const MisplacedAttribute& attribute) = 0;
    virtual void visit(const MetaAttribute& attribute) = 0;
};

} // namespace Corvid::MetaMetadata
