#pragma once

#include "host/dictionary/Dictionary.h"
#include "host/types/IdentifierTypes.h"

#include <array>
#include <unordered_map>
#include <utility>

namespace Corvid::Metadata {

/// The local tags of one partition, as its primer pack gives them, and the dictionary.
class CORVID_EXPORT PartitionDictionary {
public:
    using Entry = std::pair<Types::LocalTag, Types::UniversalLabel>;
    using const_iterator = Templates::vector<Entry>::const_iterator;

    /// @throws InvalidArgument  there is no dictionary.
    explicit PartitionDictionary(Templates::SharedPtr<MetaMetadata::Dictionary> dictionary);

    const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary() const noexcept {
        return dictionary_;
    }

    /// The label of a local tag, or null.
    /// @param alsoStatic  whether the dictionary's static tags count where the primer has none.
    const Types::UniversalLabel* find(const Types::LocalTag& tag, bool alsoStatic) const;

    /// The label as the primer has it, with the version byte that it has there; null where the
    /// primer has no version of it.
    const Types::UniversalLabel* find(const Types::UniversalLabel& label) const;

    /// The local tag of a label, whatever its version byte. A label that has none gets its static
    /// tag, if that is free, or else the highest dynamic one that is.
    /// @throws LimitExceeded  all dynamic tags are in use.
    Types::LocalTag findOrGenerate(const Types::UniversalLabel& label);
    /// The same, sooner where it is the likely one.
    Types::LocalTag findOrGenerate(const Types::UniversalLabel& label,
                                   const Types::LocalTag& likely);

    /// The local tag for an element with that attribute: an unknown one names it itself.
    Types::LocalTag tagOf(const MetaMetadata::AbstractMetaAttribute& attribute);

    /// The local tag for an unknown element of which a document has no more than the tag. It is
    /// that one, unless it has been generated for a label, whose property the element would turn
    /// into: then a free one, kept as keepTagOf() keeps tags.
    /// @throws LimitExceeded  another is needed, and all dynamic tags are in use.
    Types::LocalTag tagForUnknown(const Types::LocalTag& written);

    /// Keeps the tag that an unknown element names from being generated for a label, whether the
    /// primer has it or not: else the element would turn into that label's property in the file.
    /// Attributes of other kinds keep nothing.
    void keepTagOf(const MetaMetadata::AbstractMetaAttribute& attribute);

    /// Keeps a dynamic tag from being generated for a label.
    void keep(const Types::LocalTag& tag);

    /// Adds an entry for a tag that has none, but a label in the dictionary.
    void addStatic(const Types::LocalTag& tag);

    /// Adds an entry of a primer pack. Of two entries with one tag, or with one label, the first
    /// counts; all are kept.
    void add(const Types::LocalTag& tag, const Types::UniversalLabel& label);

    /// The entries in the order of the primer pack.
    const_iterator begin() const noexcept { return entries_.begin(); }
    const_iterator end() const noexcept { return entries_.end(); }

private:
    static constexpr std::size_t kept = static_cast<std::size_t>(-1);

    /// @throws LimitExceeded  all are in use.
    Types::u16 freeDynamicTag();

    Templates::SharedPtr<MetaMetadata::Dictionary> dictionary_;
    Templates::vector<Entry> entries_;
    std::unordered_map<Types::u16, std::size_t> byTag_; ///< `kept` for one without entry
    Templates::map<std::array<Types::u8, 16>, std::size_t> byLabel_;
    Templates::vector<Types::u16> generated_; ///< the dynamic tags made here, the highest first
    Types::u16 nextDynamicTag_ = 0xFFFF;
};

} // namespace Corvid::Metadata
