#pragma once

#include "host/metadata/DarkMetadataSet.h"
#include "host/metadata/DarkParsedGroup.h"
#include "host/metadata/MetadataSet.h"
#include "host/metadata/PartitionDictionary.h"
#include "host/metadata/Targets.h"

#include <memory>

namespace Corvid::Metadata {

class ReferenceIndex;

/// The header metadata of one partition: its sets, its dark sets, its local tags and dictionary.
///
/// One thread at a time, also for reading: references are looked up in an index made on demand.
class CORVID_EXPORT PartitionMetadata {
public:
    using Sets = Templates::vector<MetadataSet*>;
    using DarkSets = Templates::list<DarkMetadataSet*>;

    /// @throws InvalidArgument  there is no dictionary.
    explicit PartitionMetadata(Templates::SharedPtr<MetaMetadata::Dictionary> dictionary);
    PartitionMetadata(const PartitionMetadata&) = delete;
    PartitionMetadata& operator=(const PartitionMetadata&) = delete;
    virtual ~PartitionMetadata();

    virtual PartitionDictionary& partitionDictionary() { return dictionary_; }
    const PartitionDictionary& partitionDictionary() const noexcept { return dictionary_; }

    /// All sets in the order in which they came.
    Sets::const_iterator begin() const noexcept { return sets_.begin(); }
    Sets::const_iterator end() const noexcept { return sets_.end(); }
    std::size_t size() const noexcept { return sets_.size(); }

    /// All sets with that key, whatever its version byte, in the partition's order.
    Sets find(const KLV::Key& key) const;

    /// The sets whose InstanceUID the reference names; empty where it dangles.
    /// @throws IOError  an index had to be made, and the system's random source gives nothing.
    Targets resolve(const Types::Reference& reference) const;
    Targets resolve(const Types::UUID& uuid) const;
    /// Whether two sets have the same InstanceUID.
    /// @throws IOError  as resolve().
    bool isAmbiguous() const;

    /// Appends the sets in the order in which a file is to hold them: the tree that the references
    /// of the first Preface span, depth first, then the sets outside of it as they came.
    ///
    /// The tree is what a document shows of the Preface with references as links: it goes on at the
    /// first target of each strong reference, and takes in a set of unknown class at a weak one,
    /// too. A property that documents have no place for leads nowhere, nor does a set of unknown
    /// class.
    ///
    /// @param withFloating    whether the sets outside the tree are listed at all.
    /// @param structuralOnly  whether sets with other than structural keys are left out.
    /// @return how many of the sets appended, the last ones, are outside the tree.
    std::size_t calculateSerializationOrder(Templates::vector<const MetadataSet*>& order,
                                            bool withFloating, bool structuralOnly) const;

    /// Makes a set with every element that its class and its ancestors list, without values but for
    /// a fresh InstanceUID.
    /// @throws InvalidArgument  the dictionary does not know the key.
    MetadataSet& createMetadataSet(const KLV::Key& key);

    /// Makes a set of a class without any element, to be filled from a file.
    MetadataSet& createEmptyMetadataSet(const KLV::Key& key,
                                        const MetaMetadata::MetaMetadataSet& definition);
    DarkParsedGroup& createDarkParsedGroup(const KLV::Key& key);

    DarkSets::const_iterator darkBegin() const noexcept { return darkSets_.begin(); }
    DarkSets::const_iterator darkEnd() const noexcept { return darkSets_.end(); }
    /// @throws InvalidArgument  there is no set.
    void addDarkMetadataSet(Templates::auto_ptr<DarkMetadataSet> set);
    /// @return the dark set after it.
    DarkSets::const_iterator removeDark(DarkSets::const_iterator set);

    /// Takes some of the sets away, in whatever order they are named. The others stay in theirs, and
    /// sets of another partition are left alone.
    void remove(const Templates::vector<const MetadataSet*>& sets);
    /// Takes the last set away again, which must be this one.
    void removeLast(const MetadataSet& set) noexcept;

    /// To be called when an invalid element is made: see PartitionDictionary::keepTagOf().
    void keepTagOf(const MetaMetadata::AbstractMetaAttribute& attribute) {
        dictionary_.keepTagOf(attribute);
    }

    /// To be called when an InstanceUID has changed.
    void forgetReferences() const noexcept;

private:
    const ReferenceIndex& references() const;
    template <class Set> Set& own(Templates::auto_ptr<Set> set);

    PartitionDictionary dictionary_;
    Sets sets_;
    DarkSets darkSets_;
    mutable std::unique_ptr<ReferenceIndex> references_; ///< made on first use after a change
};

} // namespace Corvid::Metadata
