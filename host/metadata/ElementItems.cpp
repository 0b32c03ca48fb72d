#include "host/metadata/ElementItems.h"

namespace Corvid::Metadata {

/// Takes an element apart by its kind.
struct ElementItems::Contents : Visitors::ElementVisitor {
    explicit Contents(ElementItems& into) : items(into) {}

    void visit(const ReferenceBatchElement& element) override { items.references_ = &element; }
    void visit(const ReferenceArrayElement& element) override { items.references_ = &element; }
    void visit(const ReferenceElement& element) override { items.reference_ = element.value(); }
    void visit(const BatchElement& element) override { items.list_ = element.value(); }
    void visit(const ArrayElement& element) override { items.list_ = element.value(); }
    void visit(const SimpleElement& element) override { items.simple_ = element.value(); }

    ElementItems& items;
};

ElementItems::ElementItems(const Element* element) {
    if (element != nullptr) {
        Contents contents(*this);
        element->accept(contents);
    }
}

Types::u32 ElementItems::size() const noexcept {
    if (list_ != nullptr) {
        return list_->size();
    }
    if (references_ != nullptr) {
        return references_->size();
    }
    return simple_ != nullptr || reference_ != nullptr ? 1 : 0;
}

const Types::SimpleDataType& ElementItems::at(Types::u32 index) const noexcept {
    if (const auto* const found = reference(index)) {
        return *found;
    }
    return list_ != nullptr ? list_->at(index) : *simple_;
}

const Types::Reference* ElementItems::reference(Types::u32 index) const noexcept {
    return references_ != nullptr ? &references_->at(index) : reference_;
}

} // namespace Corvid::Metadata
