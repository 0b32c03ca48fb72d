#pragma once

#include "host/klv/Triplet.h"
#include "host/metadata/PartitionMetadata.h"
#include "host/mxf/TagMeanings.h"
#include "host/mxf/Warnings.h"

namespace Corvid::mxf {

/// The most properties of a set that is taken apart; one with more is kept as a dark set. Real sets
/// have some tens, and no more local tags than twice this many can be distinguished.
constexpr std::size_t greatestPropertyCount = 0x7FFF;

/// Makes sets of the KLV triplets of header metadata. Nothing is lost: what the dictionary does not
/// know, or what does not fit it, is kept as dark or unknown.
class CORVID_EXPORT SetReader {
public:
    /// Whether the partition has a primer pack; where it has none, no tag is missing in it.
    enum class Primer : unsigned char { there, missing };

    /// @param partition  takes the sets; the primer pack's entries are in its dictionary already.
    ///                   Borrowed, as the warnings are.
    SetReader(Metadata::PartitionMetadata& partition, WarningSink& warnings,
              Primer primer = Primer::there)
        : partition_(partition), warnings_(warnings), meanings_(partition.partitionDictionary()),
          primer_(primer) {}

    /// Adds the set of a triplet to the partition:
    /// - a set of a class that the dictionary knows, with its properties in the order of the file;
    /// - a DarkParsedGroup where the dictionary does not know the key of a local set, but its
    ///   properties can be separated and one is an InstanceUID;
    /// - else a DarkMetadataSet. That is also what becomes of a set of a known class whose
    ///   properties do not fill its length exactly, or have BER lengths of several forms or a value
    ///   that is too long: as a dark set it keeps every byte, as a set of its class it could not.
    /// @param value  the whole value; borrowed for the call.
    /// @return the set; null for a DarkMetadataSet.
    const Metadata::MetadataSet* read(const KLV::Triplet& triplet, Types::ByteView value);

private:
    struct Place;

    void fill(Metadata::MetadataSet& set, Types::ByteView value, std::uint64_t valueOffset);
    void addProperty(Metadata::MetadataSet& set, TagMeaning& meaning, Types::ByteView bytes,
                     const Place& place);
    void addInvalid(Metadata::MetadataSet& set, TagMeaning& meaning, Types::ByteView bytes,
                    const Place& place);
    void fill(Metadata::DarkParsedGroup& group, Types::ByteView value);
    void addDark(const KLV::Triplet& triplet, Types::ByteView value);
    void warn(const WarningKind& kind, const Place& place, std::string text) const;

    Metadata::PartitionMetadata& partition_;
    WarningSink& warnings_;
    TagMeanings meanings_;
    Primer primer_;
};

/// The InstanceUID of a set that SetReader makes a DarkParsedGroup of; nothing for any other set.
/// @param value  the whole value. Borrowed.
CORVID_EXPORT std::optional<Types::UUID> identifierOfDarkGroup(
    const KLV::Key& key, Types::ByteView value, const Metadata::PartitionDictionary& primer);

/// What a warning calls a set: its name in the dictionary, or its key.
CORVID_EXPORT std::string nameOfSet(const KLV::Key& key,
                                    const MetaMetadata::MetaMetadataSet* definition);

} // namespace Corvid::mxf
