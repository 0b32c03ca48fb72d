#include "inspection/Summary.h"

#include "host/base/Exceptions.h"
#include "host/base/Shortened.h"
#include "host/metadata/Names.h"
#include "inspection/Walk.h"
#include "inspection/essence/Describe.h"

#include <algorithm>
#include <unordered_map>

namespace Corvid::Inspection {

namespace {

using Metadata::MetadataSet;
using Metadata::PartitionMetadata;
using Structural::SetClass;

/// Descriptors that nest out of all proportion end here.
constexpr int deepestDescriptor = 8;

std::optional<Timecode> timecodeOf(const MetadataSet& component) {
    if (!isA(component, SetClass::timecode)) {
        return std::nullopt;
    }
    return Timecode{number(component, Structural::startTimecode).value_or(0),
                    number(component, Structural::framesPerSecond).value_or(0),
                    number(component, Structural::dropFrame).value_or(false)};
}

/// The timecodes of segments, each looked up once: tracks may share a segment.
class Timecodes {
public:
    explicit Timecodes(Walk& walk) : walk_(walk) {}

    /// That of a segment, or of its first component.
    const std::optional<Timecode>& in(const MetadataSet& segment) {
        const auto [entry, isNew] = timecodes_.try_emplace(&segment);
        if (isNew) {
            entry->second = timecodeOf(segment);
            const auto* const component =
                entry->second ? nullptr : walk_.first(segment, Structural::components);
            if (component != nullptr) {
                entry->second = timecodeOf(*component);
            }
        }
        return entry->second;
    }

private:
    Walk& walk_;
    std::unordered_map<const MetadataSet*, std::optional<Timecode>> timecodes_;
};

void addLabels(const MetadataSet& set, Summary::Descriptor& descriptor) {
    for (const auto& [property, label] : labelValues(set)) {
        descriptor.labels.push_back({className(set), property, label});
    }
}

Summary::Descriptor describe(Walk& walk, const MetadataSet& set, int depth = 0) {
    Summary::Descriptor descriptor;
    descriptor.className = className(set);
    addLabels(set, descriptor);
    for (const MetadataSet* sub : walk.next(set, Structural::subDescriptors)) {
        descriptor.subDescriptors.push_back(className(*sub));
        addLabels(*sub, descriptor);
    }
    if (depth != deepestDescriptor) {
        for (const MetadataSet* part : walk.next(set, Structural::fileDescriptors)) {
            descriptor.parts.push_back(describe(walk, *part, depth + 1));
        }
    }
    return descriptor;
}

/// The names of data definitions, by their label: of those that the file defines.
using DefinitionNames = std::map<std::array<Types::u8, 16>, std::string>;

DefinitionNames definitionNames(const PartitionMetadata& metadata) {
    DefinitionNames names;
    for (const MetadataSet* set : metadata.find(Structural::keyOf(SetClass::definitionOfData))) {
        if (const auto* label = find(*set, Structural::definitionId)) {
            names.emplace(label->withoutVersion(),
                          shortened(text(*set, Structural::definitionName), longestKind));
        }
    }
    return names;
}

std::string trackKind(const Types::UniversalLabel& label, const DefinitionNames& names) {
    std::string registered = Structural::trackKind(label);
    if (!registered.empty()) {
        return registered;
    }
    const auto own = names.find(label.withoutVersion());
    return own != names.end() && !own->second.empty() ? own->second
                                                      : Platform::toUtf8(label.toString());
}

Summary::Track describeTrack(Walk& walk, Timecodes& timecodes, const DefinitionNames& names,
                             const MetadataSet& set) {
    Summary::Track track;
    track.className = className(set);
    track.id = number(set, Structural::trackId);
    track.number = number(set, Structural::trackNumber);
    track.name = text(set, Structural::trackName);
    track.origin = number(set, Structural::origin);
    const auto* rate = find(set, Structural::editRate);
    rate = rate == nullptr ? find(set, Structural::eventEditRate) : rate;
    if (rate != nullptr) {
        track.editRate = *rate;
    }
    const auto* const segment = walk.first(set, Structural::trackSegment);
    if (segment == nullptr) {
        return track;
    }
    if (const auto* definition = find(*segment, Structural::dataDefinition)) {
        track.kind = trackKind(*definition, names);
    }
    if (const auto length = number(*segment, Structural::duration); length && *length >= 0) {
        track.duration = length;
    }
    track.timecode = timecodes.in(*segment);
    return track;
}

/// @param descriptor  of the package; may be null.
std::string kindOf(const MetadataSet& package, const MetadataSet* descriptor) {
    if (isA(package, SetClass::materialPackage)) {
        return "material";
    }
    if (!isA(package, SetClass::sourcePackage)) {
        return className(package);
    }
    if (descriptor == nullptr || !isA(*descriptor, SetClass::essenceDescriptor)) {
        return "source";
    }
    return isA(*descriptor, SetClass::fileDescriptor) ? "file source" : "physical source";
}

Summary::Package describePackage(Walk& walk, Timecodes& timecodes, const DefinitionNames& names,
                                 const MetadataSet& set) {
    Summary::Package package;
    const auto* const descriptor = walk.first(set, Structural::descriptor);
    package.kind = kindOf(set, descriptor);
    if (const auto* id = find(set, Structural::packageId)) {
        package.id = Platform::toUtf8(id->toString());
    }
    package.name = text(set, Structural::packageName);
    package.created = text(set, Structural::packageCreated);
    for (const MetadataSet* track : walk.next(set, Structural::tracks)) {
        package.tracks.push_back(describeTrack(walk, timecodes, names, *track));
    }
    for (const MetadataSet* each : walk.next(set, Structural::descriptor)) {
        package.descriptor = describe(walk, *each);
        break;
    }
    return package;
}

void describePreface(const PartitionMetadata& metadata, const MetadataSet& preface,
                     Summary& summary) {
    if (const auto* pattern = find(preface, Structural::operationalPattern)) {
        summary.operationalPattern = *pattern;
    }
    summary.essenceContainers = labels(preface, Structural::essenceContainers);
    summary.descriptiveSchemes = labels(preface, Structural::descriptiveSchemes);
    summary.conformsTo = labels(preface, Structural::conformsTo);
    Walk walk(metadata);
    Timecodes timecodes(walk);
    for (const MetadataSet* set : walk.next(preface, Structural::identifications)) {
        summary.writers.push_back(
            {text(*set, Structural::companyName), text(*set, Structural::productName),
             text(*set, Structural::versionString), text(*set, Structural::productVersion),
             text(*set, Structural::toolkitVersion), text(*set, Structural::platform),
             text(*set, Structural::modificationDate)});
    }
    const DefinitionNames names = definitionNames(metadata);
    for (const MetadataSet* storage : walk.next(preface, Structural::contentStorage)) {
        for (const MetadataSet* package : walk.next(*storage, Structural::packages)) {
            summary.packages.push_back(describePackage(walk, timecodes, names, *package));
        }
    }
}

/// Counts an element that does not belong to the class of its set.
void countInvalid(const Metadata::PartitionDictionary& tags, const MetadataSet& set,
                  const Metadata::Element& element, Summary& summary) {
    using Kind = MetaMetadata::AttributeFacts::Kind;
    const auto& facts = element.metaAttribute()->facts();
    const std::string name = propertyName(tags, element);
    if (facts.kind == Kind::misplaced) {
        ++summary.misplacedProperties[className(set) + "/" + name];
    } else if (facts.isUnfit) {
        ++summary.unfitProperties[className(set) + "/" + name];
    } else if (facts.kind == Kind::unknown) {
        ++summary.unknownProperties[name];
    }
}

/// True for a set that is there to define what others are: of a dictionary or a meta-dictionary.
bool isDefinition(const MetadataSet& set) {
    return isA(set, SetClass::definition) || isA(set, SetClass::dictionary) ||
           Structural::isOfMetaDictionary(set.key());
}

void countSets(const PartitionMetadata& metadata, Summary& summary) {
    for (const MetadataSet* set : metadata) {
        ++summary.sets;
        if (set->metaMetadataSet() == nullptr) {
            auto& count = summary.darkSets[className(*set)];
            ++count.sets;
            count.bytes += set->serializedSize();
            continue;
        }
        ++summary.setsByKind[className(*set)];
        if (isDefinition(*set)) {
            summary.definitionKinds.insert(className(*set));
        }
        for (auto element = set->invalidBegin(); element != set->invalidEnd(); ++element) {
            countInvalid(metadata.partitionDictionary(), *set, **element, summary);
        }
    }
    for (auto set = metadata.darkBegin(); set != metadata.darkEnd(); ++set) {
        ++summary.sets;
        auto& count = summary.darkSets[Platform::toUtf8((*set)->key().toString())];
        ++count.sets;
        count.bytes += KLV::Key::length + (*set)->berLength() + (*set)->value()->size();
    }
}

} // namespace

Summary summarise(mxf::File& file, const mxf::HeaderMetadata& header) {
    if (!header.metadata) {
        throw Exceptions::InvalidArgument("no metadata to summarise, expected that of the file",
                                          CORVID_HERE);
    }
    Summary summary;
    summary.file = file.source().name();
    summary.runIn = file.runIn();
    summary.partitions = file.partitions();
    summary.metadataPartition = header.partition;
    summary.metadataIsWhole = header.isWhole;
    summary.metadataCutOffAt = header.cutOffAt;
    const auto& pack = summary.partitions[header.partition].pack;
    summary.operationalPattern = pack.operationalPattern;
    summary.essenceContainers.assign(pack.essenceContainers.begin(), pack.essenceContainers.end());
    const auto prefaces =
        header.metadata->find(Metadata::Structural::StructuralMetadataKeys::preface());
    if (!prefaces.empty()) {
        describePreface(*header.metadata, *prefaces.front(), summary);
        summary.essence = describeEssence(*header.metadata, *prefaces.front());
    }
    countSets(*header.metadata, summary);
    return summary;
}

} // namespace Corvid::Inspection
