#include "editing/supplement/CopyNumbers.h"

#include "editing/supplement/ListedElements.h"
#include "host/metadata/Elements.h"
#include "host/metadata/PartitionMetadata.h"

#include <algorithm>
#include <map>
#include <unordered_set>

namespace Corvid::Editing {

namespace {

using Metadata::Element;
using Metadata::MetadataSet;

/// Finds the sets that a set owns.
class Owned : public Metadata::Visitors::ElementVisitor {
public:
    void visit(const Metadata::SimpleElement&) override {}
    void visit(const Metadata::BatchElement&) override {}
    void visit(const Metadata::ArrayElement&) override {}
    void visit(const Metadata::ReferenceElement& element) override { add(*element.value()); }
    void visit(const Metadata::ReferenceBatchElement& element) override { addEach(element); }
    void visit(const Metadata::ReferenceArrayElement& element) override { addEach(element); }

    std::vector<const Types::Reference*> references;

private:
    void add(const Types::Reference& reference) {
        if (reference.isStrong()) {
            references.push_back(&reference);
        }
    }
    void addEach(const Metadata::ReferenceCollectionElement& element) {
        for (Types::u32 i = 0; i != element.size(); ++i) {
            add(element.at(i));
        }
    }
};

/// A document holds the tree, and then each set outside of it with what it owns, once in each of
/// the two. Only the first of the sets with an InstanceUID is found by reference, so it does not
/// matter in which order a set names what it owns.
class CopyCount {
public:
    CopyCount(const Metadata::PartitionMetadata& metadata, bool structuralOnly)
        : metadata_(metadata), structuralOnly_(structuralOnly) {}

    void add(const MetadataSet& set) {
        if (set.hasInstanceUID() && metadata_.resolve(set.instanceUID()).size() > 1) {
            auto& next = set.metaMetadataSet() == nullptr ? nextDark_ : next_;
            numbers[&set].push_back(next[set.instanceUID()]++);
        }
    }

    void addWithOwned(const MetadataSet& root) {
        std::vector<const MetadataSet*> waiting{&root};
        while (!waiting.empty()) {
            const MetadataSet& set = *waiting.back();
            waiting.pop_back();
            if (!seen_.insert(&set).second) {
                continue;
            }
            add(set);
            if (set.metaMetadataSet() == nullptr) {
                continue;
            }
            Owned owned;
            forEachElement(set, [&](const Element& element) { element.accept(owned); });
            for (const Types::Reference* const reference : owned.references) {
                const auto targets = metadata_.resolve(*reference);
                if (!targets.empty() &&
                    (!structuralOnly_ || KLV::isStructuralMetadataSet(targets.front().key()))) {
                    waiting.push_back(&targets.front());
                }
            }
        }
    }

    void forgetSeen() { seen_.clear(); }

    CopyNumbers numbers;

private:
    const Metadata::PartitionMetadata& metadata_;
    bool structuralOnly_;
    std::map<Types::UUID, Types::u32> next_;
    std::map<Types::UUID, Types::u32> nextDark_;
    std::unordered_set<const MetadataSet*> seen_;
};

} // namespace

CopyNumbers numberCopies(const Metadata::PartitionMetadata& metadata,
                         const Templates::vector<const MetadataSet*>& order, std::size_t outside,
                         const std::optional<DocumentPart>& part) {
    if (!metadata.isAmbiguous()) {
        return {};
    }
    CopyCount count(metadata, part && part->structuralOnly);
    const auto outsideBegin = order.end() - static_cast<std::ptrdiff_t>(outside);
    if (part) {
        count.addWithOwned(*part->start);
    } else {
        std::for_each(order.begin(), outsideBegin, [&](const auto* set) { count.add(*set); });
    }
    count.forgetSeen();
    std::for_each(outsideBegin, order.end(), [&](const auto* set) { count.addWithOwned(*set); });
    return std::move(count.numbers);
}

} // namespace Corvid::Editing
