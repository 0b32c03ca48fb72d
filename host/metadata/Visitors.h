#pragma once

#include "Corvid/Export.h"

namespace Corvid::Metadata {

class ArrayElement;
class BatchElement;
class MetadataSet;
class ReferenceArrayElement;
class ReferenceBatchElement;
class ReferenceElement;
class SimpleElement;

namespace Visitors {

/// Work on a set.
class CORVID_EXPORT MetadataSetVisitor {
public:
    virtual ~MetadataSetVisitor();
    virtual void visit(const MetadataSet& set) = 0;
};

/// Work on a set that may be changed.
class CORVID_EXPORT NonConstMetadataSetVisitor {
public:
    virtual ~NonConstMetadataSetVisitor();
    virtual void visit(MetadataSet& set) = 0;
};

/// Work on an element by its kind.
class CORVID_EXPORT ElementVisitor {
public:
    virtual ~ElementVisitor();
    virtual void visit(const ReferenceBatchElement& element) = 0;
    virtual void visit(const ReferenceArrayElement& element) = 0;
    virtual void visit(const ReferenceElement& element) = 0;
    virtual void visit(const BatchElement& element) = 0;
    virtual void visit(const ArrayElement& element) = 0;
    virtual void visit(const SimpleElement& element) = 0;
};

/// The same for elements that may be changed.
class CORVID_EXPORT NonConstElementVisitor {
public:
    virtual ~NonConstElementVisitor();
    virtual void visit(ReferenceBatchElement& element) = 0;
    virtual void visit(ReferenceArrayElement& element) = 0;
    virtual void visit(ReferenceElement& element) = 0;
    virtual void visit(BatchElement& element) = 0;
    virtual void visit(ArrayElement& element) = 0;
    virtual void visit(SimpleElement& element) = 0;
};

} // namespace Visitors

} // namespace Corvid::Metadata
