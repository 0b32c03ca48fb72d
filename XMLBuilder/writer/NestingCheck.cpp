#include "XMLBuilder/writer/NestingCheck.h"

#include "XMLBuilder/InlineDepth.h"
#include "XMLBuilder/writer/Document.h"
#include "XMLBuilder/writer/ElementOrder.h"
#include "XMLBuilder/writer/VisitedRecord.h"
#include "host/base/Exceptions.h"
#include "host/metadata/PartitionMetadata.h"

#include <string>
#include <vector>

namespace Corvid::XMLBuilder {

namespace {

using Metadata::MetadataSet;

/// Collects the strong references of elements.
class StrongReferences : public Metadata::Visitors::ElementVisitor {
public:
    explicit StrongReferences(std::vector<const Types::Reference*>& references)
        : references_(references) {}

    void visit(const Metadata::ReferenceBatchElement& element) override { addAll(element); }
    void visit(const Metadata::ReferenceArrayElement& element) override { addAll(element); }
    void visit(const Metadata::ReferenceElement& element) override {
        if (element.value() != nullptr) {
            add(*element.value());
        }
    }
    void visit(const Metadata::BatchElement&) override {}
    void visit(const Metadata::ArrayElement&) override {}
    void visit(const Metadata::SimpleElement&) override {}

private:
    void addAll(const Metadata::ReferenceCollectionElement& element) {
        for (Types::u32 i = 0; i != element.size(); ++i) {
            add(element.at(i));
        }
    }
    void add(const Types::Reference& reference) {
        if (reference.isStrong()) {
            references_.push_back(&reference);
        }
    }

    std::vector<const Types::Reference*>& references_;
};

/// One pass over sets: each is entered where it is first reached, and left when all that its
/// references lead to has been entered.
class Pass {
public:
    explicit Pass(const Filling& filling) : filling_(filling) {}

    void walk(const MetadataSet& start) {
        enter(start);
        while (!open_.empty()) {
            OpenSet& set = open_.back();
            if (set.next == references_.size()) {
                references_.resize(set.first);
                open_.pop_back();
            } else {
                follow(*references_[set.next++]);
            }
        }
    }

private:
    /// Its references begin at first in references_; it is the last that is open, so they end
    /// there.
    struct OpenSet {
        std::size_t first;
        std::size_t next;
    };

    void follow(const Types::Reference& reference) {
        const Metadata::Targets targets = filling_.partition->resolve(reference);
        if (targets.empty()) {
            return;
        }
        const MetadataSet& target = targets.front();
        if (!filling_.skipNonStructural || KLV::isStructuralMetadataSet(target.key())) {
            enter(target);
        }
    }

    void enter(const MetadataSet& set) {
        if (!visited_.insert(set) || set.metaMetadataSet() == nullptr) {
            return;
        }
        if (open_.size() == greatestInlineDepth) {
            throw Exceptions::LimitExceeded(
                "set " + Platform::toUtf8(set.instanceUID().toString()) +
                    ": strong references nest deeper than " + std::to_string(greatestInlineDepth) +
                    " sets, write the references as links instead",
                CORVID_HERE);
        }
        open_.push_back({references_.size(), references_.size()});
        elements_.clear();
        appendInDocumentOrder(set, elements_);
        StrongReferences collector(references_);
        for (const PlacedElement& placed : elements_) {
            placed.element->accept(collector);
        }
    }

    const Filling& filling_;
    VisitedRecord visited_;
    std::vector<OpenSet> open_;
    std::vector<const Types::Reference*> references_; ///< of all open sets
    std::vector<PlacedElement> elements_;             ///< of the set at hand
};

} // namespace

void refuseDeepNesting(const Filling& filling) {
    if (filling.start == nullptr) {
        return;
    }
    Pass(filling).walk(*filling.start);

    Templates::vector<const MetadataSet*> order;
    const std::size_t outside = filling.partition->calculateSerializationOrder(order, true, false);
    Pass floating(filling);
    for (auto set = order.end() - static_cast<std::ptrdiff_t>(outside); set != order.end(); ++set) {
        floating.walk(**set);
    }
}

} // namespace Corvid::XMLBuilder
