#pragma once

#include "host/metadata/PartitionMetadata.h"
#include "inspection/essence/Essence.h"

#include <map>

/// What makes the parts of Essence.h.
namespace Corvid::Inspection {

class Packages;
class Walk;

/// @param subDescriptors  of the descriptor.
/// @param contradictions  gets what contradicts itself.
Picture describePicture(const Metadata::MetadataSet& descriptor,
                        const std::vector<const Metadata::MetadataSet*>& subDescriptors,
                        Contradictions& contradictions);

/// @param subDescriptors  of the descriptor.
/// @param contradictions  gets what contradicts itself.
Sound describeSound(const Metadata::MetadataSet& descriptor,
                    const std::vector<const Metadata::MetadataSet*>& subDescriptors,
                    Contradictions& contradictions);

/// The groups that the sub-descriptors of any descriptor label.
std::vector<Sound::Group> soundGroups(
    const std::vector<const Metadata::MetadataSet*>& subDescriptors);

/// What encrypts the essence of a package, by the package's set.
struct Encryption {
    std::string key;                                ///< "urn:uuid:..."
    std::optional<Types::UniversalLabel> container; ///< of the essence before it was encrypted
};
using Encryptions = std::map<const Metadata::MetadataSet*, Encryption>;

/// The streams of all packages of files, in the order of the file.
std::vector<Stream> describeStreams(Walk& walk, const Packages& packages,
                                    const Metadata::MetadataSet& preface,
                                    const Encryptions& encryptions, Contradictions& contradictions);

/// What descriptive metadata says, and what it encrypts.
struct Schemes {
    std::vector<SchemeSet> sets; ///< frameworks, each followed by what it owns
    Encryptions encryptions;
};

Schemes describeSchemes(Walk& walk, const Packages& packages);

/// The value of the first property with a label that ends in these eight bytes; or empty.
std::string fieldOf(const std::vector<SchemeSet>& sets, Types::u64 item);

Timing describeTiming(const Packages& packages);

/// @param preface  of the metadata.
Essence describeEssence(const Metadata::PartitionMetadata& metadata,
                        const Metadata::MetadataSet& preface);

} // namespace Corvid::Inspection
