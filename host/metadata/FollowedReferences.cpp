#include "host/metadata/FollowedReferences.h"

#include "host/dictionary/AbstractMetaAttribute.h"
#include "host/dictionary/MetaElement.h"
#include "host/metadata/MetadataSet.h"

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
            references_.push_back(element.value());
        }
    }
    void visit(const BatchElement&) override {}
    void visit(const ArrayElement&) override {}
    void visit(const SimpleElement&) override {}

private:
    void addAll(const ReferenceCollectionElement& element) {
        for (Types::u32 i = 0; i != element.size(); ++i) {
            references_.push_back(&element.at(i));
        }
    }

    Templates::vector<const Types::Reference*>& references_;
};

bool hasPlaceInDocuments(const Element& element) {
    const auto& facts = element.metaAttribute()->facts();
    return facts.kind == MetaMetadata::AttributeFacts::Kind::placed &&
           facts.definition->attribute("SchemaIndex") != nullptr;
}

} // namespace

void appendFollowedReferences(const MetadataSet& set,
                              Templates::vector<const Types::Reference*>& references) {
    if (set.metaMetadataSet() == nullptr) {
        return;
    }
    Templates::vector<const Element*> elements;
    for (const auto& entry : set.made()) {
        if (hasPlaceInDocuments(*entry.second)) {
            elements.push_back(entry.second);
        }
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
