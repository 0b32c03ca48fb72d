#pragma once

#include "host/metadata/PartitionMetadata.h"
#include "inspection/query/Path.h"

#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Corvid::Inspection {

/// Where a path leads to: a set, a property of a set, or an item of one.
struct Place {
    Metadata::MetadataSet* set = nullptr;
    Metadata::Element* element = nullptr; ///< one that has a value; null for the set itself
    std::optional<Types::u32> item;       ///< of a list or a single value, from 0; nothing for all

    friend bool operator==(const Place& a, const Place& b) noexcept {
        return a.set == b.set && a.element == b.element && a.item == b.item;
    }
};
using Places = std::vector<Place>;

/// The text of a value as people write it; UTF-8.
using ValueText = std::function<std::string(const Types::SimpleDataType&)>;

/// The texts of the values at a place: of each item of a list; of a set, its InstanceUID.
std::vector<std::string> textsOf(const Place& place, const ValueText& text);

/// Follows paths through the sets of a partition.
///
/// Each step looks at a set once, so its work grows with the sets and references that there are,
/// whatever circles they make. Properties of other classes that a set has are found as well; what
/// the dictionary does not know is not.
class Query {
public:
    /// @param metadata  borrowed; its sets must stay.
    /// @param text      of values that conditions compare.
    Query(const Metadata::PartitionMetadata& metadata, ValueText text);

    /// The places, in the order of the document; each once.
    Places find(const Path& path);

    /// The sets at places: those themselves, and those that properties refer to. Each once.
    std::vector<Metadata::MetadataSet*> setsAt(const Places& places) const;

private:
    /// Something about a place: how much of a path is to be followed from there, or a property.
    struct AtPlace {
        Place place;
        const void* what;

        friend bool operator==(const AtPlace& a, const AtPlace& b) noexcept {
            return a.place == b.place && a.what == b.what;
        }
    };
    struct HashOf {
        std::size_t operator()(const Place& place) const noexcept;
        std::size_t operator()(const AtPlace& each) const noexcept;
    };

    void addProperties(const Step& step, Metadata::MetadataSet& set, Places& to) const;
    void addNamed(const Step& step, Metadata::MetadataSet& set, Places& to) const;
    Places follow(const Step& step, const Places& places);
    Places reach(const Places& places) const;
    Places next(const Step& step, const Place& place) const;
    Places keep(const std::vector<Condition>& conditions, Places places);
    Places keep(const Condition& condition, const Places& places);
    bool leadsTo(const Condition& condition, std::size_t step, const Place& place);

    std::vector<Metadata::MetadataSet*> targetsOf(const Place& place, bool onlyStrong) const;
    std::vector<Metadata::MetadataSet*> ownedBy(const Metadata::MetadataSet& set) const;

    const Metadata::PartitionMetadata& metadata_;
    ValueText text_;
    std::vector<Metadata::MetadataSet*> sets_; ///< all of them in the order of the document
    /// By set and definition, those with a value that do not belong to the class of their set.
    std::unordered_map<AtPlace, std::vector<Metadata::Element*>, HashOf> others_;
    std::unordered_map<AtPlace, bool, HashOf> known_; ///< what is found out in one call
};

} // namespace Corvid::Inspection
