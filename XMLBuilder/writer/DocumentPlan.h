#pragma once

#include "XMLBuilder/writer/NamespaceMap.h"
#include "host/klv/Key.h"
#include "host/types/DataType.h"

#include <cstdint>
#include <deque>
#include <string>
#include <unordered_map>
#include <vector>

namespace Corvid::Metadata {
class DarkMetadataSet;
class Element;
class MetadataSet;
class PartitionMetadata;
} // namespace Corvid::Metadata

namespace Corvid::XMLBuilder {

/// What the sets of one pass over a partition become: each is written at most once, at the first
/// place where it is reached.
struct WriterPass {
    using Set = Metadata::MetadataSet;

    /// Where a set is reached: an item of a reference; null for those that nothing leads to.
    struct Place {
        const Metadata::Element* element = nullptr;
        std::uint32_t item = 0;
    };

    std::unordered_map<const Set*, Place> places;
    /// The elements of a set that documents keep apart, in their order.
    std::unordered_map<const Set*, std::vector<const Metadata::Element*>> extensions;
    /// The namespaces of links to nothing, by element and item, where it is not the usual one.
    std::unordered_map<const Metadata::Element*, std::unordered_map<std::uint32_t, const char16_t*>>
        danglingUris;

    /// Whether a reference is the place where its target is written, too.
    bool leadsTo(const Set& target, const Metadata::Element& element, std::uint32_t item) const {
        const auto place = places.find(&target);
        return place != places.end() && place->second.element == &element &&
               place->second.item == item;
    }
};

/// Whether a set is one of unknown class, which documents hold as bytes.
bool isDarkGroup(const Metadata::MetadataSet& set);

/// What a document holds and where, before any of it is made.
///
/// Which place is the first to reach a set, and which prefix a namespace gets, depends on the order
/// in which references are followed. That is not the order of the document: a set is reached in the
/// midst of another, and what does not belong to a set's class is looked at first and written last.
class DocumentPlan {
public:
    struct Manner {
        bool referencesAsValues = false; ///< sets are inside each other, not side by side
        bool skipNonStructural = false;  ///< without sets that are no structural metadata
    };

    /// What the floating container holds: a set, or bytes with a key, which are those of a group or
    /// of a dark set.
    struct Floating {
        const Metadata::MetadataSet* set = nullptr;
        const Metadata::MetadataSet* group = nullptr;
        const Metadata::DarkMetadataSet* dark = nullptr;
        const KLV::Key* key = nullptr;
        unsigned char berLength = 0;
        bool hasValue = false;
        Types::ByteView value{};
        const char16_t* uri = nullptr; ///< of the names for it
    };

    /// @param partition  borrowed, not to change; afterwards as it was, but for entries that its
    ///                   primer lacked.
    /// @param start      the set to begin with. Borrowed.
    /// @throws LimitExceeded  sets as values would nest deeper than can be read.
    DocumentPlan(Metadata::PartitionMetadata& partition, const Metadata::MetadataSet& start,
                 Manner manner);

    Metadata::PartitionMetadata& partition() const noexcept { return partition_; }
    Manner manner() const noexcept { return manner_; }
    const NamespaceMap& namespaces() const noexcept { return namespaces_; }

    /// The sets in the root, in order; those of the main pass.
    const std::vector<const Metadata::MetadataSet*>& sets() const noexcept { return sets_; }
    /// What the floating container holds, in order; its sets are those of the floating pass.
    const std::vector<Floating>& floating() const noexcept { return floating_; }
    /// There may be a container with nothing in it.
    bool hasContainer() const noexcept { return hasContainer_; }

    const WriterPass& mainPass() const noexcept { return mainPass_; }
    const WriterPass& floatingPass() const noexcept { return floatingPass_; }

private:
    class Walk;

    Floating& addBytes(const KLV::Key& key, unsigned char berLength, bool hasValue,
                       Types::ByteView value);
    void planDarkSets();
    void planFloatingSets(const Metadata::MetadataSet& start);

    Metadata::PartitionMetadata& partition_;
    Manner manner_;
    NamespaceMap namespaces_;
    std::vector<const Metadata::MetadataSet*> sets_;
    std::vector<Floating> floating_;
    bool hasContainer_ = false;
    WriterPass mainPass_;
    WriterPass floatingPass_;
    std::deque<std::string> groups_; ///< the bytes of sets of unknown class
};

} // namespace Corvid::XMLBuilder
