#include "host/metadata/SimpleValue.h"

#include "host/metadata/Elements.h"

namespace Corvid::Metadata {

const Types::SimpleDataType* simpleValue(const Element* element) {
    struct Simple : Visitors::ElementVisitor {
        void visit(const ReferenceBatchElement&) override {}
        void visit(const ReferenceArrayElement&) override {}
        void visit(const ReferenceElement&) override {}
        void visit(const BatchElement&) override {}
        void visit(const ArrayElement&) override {}
        void visit(const SimpleElement& simple) override { found = simple.value(); }
        const Types::SimpleDataType* found = nullptr;
    } simple;
    if (element != nullptr) {
        element->accept(simple);
    }
    return simple.found;
}

} // namespace Corvid::Metadata
