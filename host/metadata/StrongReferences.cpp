#include "host/metadata/StrongReferences.h"

#include <algorithm>

namespace Corvid::Metadata {

namespace {

class Collector : public Visitors::ElementVisitor {
public:
    explicit Collector(Templates::vector<const Types::Reference*>& references)
        : references_(references) {}

    void visit(const ReferenceBatchElement& element) override { addAll(element); }
    void visit(const ReferenceArrayElement& element) override { addAll(element); }
    void visit(const ReferenceElement& element) override {
        if (element.value() != nullptr) {
            add(*element.value());
        }
    }
    void visit(const BatchElement&) override {}
    void visit(const ArrayElement&) override {}
    void visit(const SimpleElement&) override {}

private:
    void add(const Types::Reference& reference) {
        if (reference.isStrong()) {
            references_.push_back(&reference);
        }
    }
    void addAll(const ReferenceCollectionElement& element) {
        for (Types::u32 i = 0; i != element.size(); ++i) {
            add(element.at(i));
        }
    }

    Templates::vector<const Types::Reference*>& references_;
};

} // namespace

void appendStrongReferences(const MetadataSet& set,
                            Templates::vector<const Types::Reference*>& references) {
    Templates::vector<const Element*> elements;
    for (const auto& entry : set.made()) {
        elements.push_back(entry.second);
    }
    elements.insert(elements.end(), set.invalidBegin(), set.invalidEnd());
    std::sort(elements.begin(), elements.end(),
              [](const Element* a, const Element* b) { return a->position() < b->position(); });
    Collector collector(references);
    for (const Element* element : elements) {
        element->accept(collector);
    }
}

} // namespace Corvid::Metadata
