#pragma once

#include "Corvid_Inspection/Export.h"
#include "host/mxf/File.h"
#include "host/types/Rational.h"
#include "inspection/essence/Essence.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace Corvid::Inspection {

/// What people want to know of a file first. Texts are UTF-8 as in the file; empty means that it
/// says nothing.
struct Summary {
    using Timecode = Inspection::Timecode;
    /// A track of a package.
    struct Track {
        std::optional<Types::u32> id;
        std::optional<Types::u32> number;
        std::string className;
        std::string name;
        std::string kind;                        ///< of its data definition, or the label of that
        std::optional<Types::Rational> editRate; ///< per second
        std::optional<Types::int64> origin;      ///< in edit units
        std::optional<Types::int64> duration;    ///< in edit units; nothing where it is not known
        std::optional<Timecode> timecode;
    };
    /// A label among the values of a descriptor.
    struct Label {
        std::string className;
        std::string property;
        Types::UniversalLabel label;
    };
    /// What a package says of its essence.
    struct Descriptor {
        std::string className;
        std::vector<Label> labels;               ///< its own, then its sub-descriptors'
        std::vector<std::string> subDescriptors; ///< their classes
        std::vector<Descriptor> parts;           ///< of a descriptor of several essences
    };
    /// A package with its tracks.
    struct Package {
        std::string kind; ///< "material", "file source", "physical source", "source", or a class
        std::string id;
        std::string name;
        std::string created;
        std::vector<Track> tracks;
        std::optional<Descriptor> descriptor;
    };
    /// A program that wrote or changed the file.
    struct Writer {
        std::string company;
        std::string product;
        std::string version;
        std::string productVersion;
        std::string toolkitVersion;
        std::string platform;
        std::string date;
    };
    /// How much there is of one kind of dark set.
    struct Count {
        std::size_t sets = 0;
        std::uint64_t bytes = 0; ///< of values that are kept as bytes
    };

    std::string file;
    std::uint64_t runIn = 0; ///< bytes before the header partition pack
    mxf::Partitions partitions;
    std::size_t metadataPartition = 0;
    bool metadataIsWhole = false;
    std::optional<std::uint64_t> metadataCutOffAt; ///< in bytes from the front of the file
    Types::UniversalLabel operationalPattern;
    std::vector<Types::UniversalLabel> essenceContainers;
    std::vector<Types::UniversalLabel> descriptiveSchemes;
    std::vector<Types::UniversalLabel> conformsTo;
    std::vector<Writer> writers; ///< in the order of the file, the last one wrote last
    std::vector<Package> packages;
    Essence essence;
    std::size_t sets = 0;                          ///< dark ones included
    std::map<std::string, std::size_t> setsByKind; ///< those of known classes
    std::set<std::string> definitionKinds;         ///< those of setsByKind that define others
    std::map<std::string, Count> darkSets;         ///< by their key
    std::map<std::string, std::size_t> unknownProperties; ///< by their label, or tag if it has none
    std::map<std::string, std::size_t> misplacedProperties; ///< by "Set/Property"
    std::map<std::string, std::size_t>
        unfitProperties; ///< by "Set/Property"; values of a wrong form
};

/// The bytes of a data definition's name in UTF-8 that the kind of a track shows: each track
/// repeats it.
constexpr std::size_t longestKind = 100;

/// Collects it.
/// @param file      borrowed; its partitions are read where they have not been.
/// @param metadata  of a partition of the file. Borrowed.
/// @throws IOError, InvalidFormat  the partitions can't be read.
/// @throws InvalidArgument  there is no metadata.
CORVID_INSPECTION_EXPORT Summary summarise(mxf::File& file, const mxf::HeaderMetadata& metadata);

} // namespace Corvid::Inspection
