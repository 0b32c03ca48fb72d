#include "tools/corvid/SetAside.h"

#include "tools/corvid/ValueImage.h"

namespace Corvid::Tool {

class SetAside::Taker : public Metadata::Visitors::NonConstElementVisitor {
public:
    explicit Taker(SetAside& aside) : aside_(aside) {}

    void visit(Metadata::SimpleElement& element) override {
        if (isRefused(element)) {
            aside_.values_.emplace_back(&element, element.value()->clone());
            element.set({});
        }
    }
    void visit(Metadata::BatchElement& element) override { take(element); }
    void visit(Metadata::ArrayElement& element) override { take(element); }
    void visit(Metadata::ReferenceElement&) override {}
    void visit(Metadata::ReferenceBatchElement&) override {}
    void visit(Metadata::ReferenceArrayElement&) override {}

private:
    static bool isRefused(const Metadata::Element& element) {
        return imageInXml(element, {}).isRefused();
    }
    void take(Metadata::CollectionElement& element) {
        if (isRefused(element)) {
            aside_.collections_.emplace_back(&element, element.value()->clone());
            element.set({});
        }
    }

    SetAside& aside_;
};

SetAside::SetAside(const Metadata::PartitionMetadata& metadata) {
    Taker taker(*this);
    for (Metadata::MetadataSet* set : metadata) {
        for (const auto& entry : set->made()) {
            entry.second->accept(taker);
        }
        for (auto element = set->invalidBegin(); element != set->invalidEnd(); ++element) {
            (*element)->accept(taker);
        }
    }
}

SetAside::~SetAside() {
    for (auto& [element, value] : values_) {
        element->set(std::move(value));
    }
    for (auto& [element, value] : collections_) {
        element->set(std::move(value));
    }
}

} // namespace Corvid::Tool
