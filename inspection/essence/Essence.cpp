#include "inspection/essence/Essence.h"

#include "inspection/essence/Describe.h"
#include "inspection/essence/Packages.h"
#include "inspection/essence/ShownText.h"
#include "inspection/essence/Urn.h"

namespace Corvid::Inspection {

namespace {

constexpr std::size_t mostSources = 8;

// The last eight bytes of labels of titles and shims; the first that is there counts.
constexpr Types::u64 titles[] = {0x0d0107010b010102, 0x0d0107010a010103, 0x0d0e010107010107,
                                 0x0105020100000000};
constexpr Types::u64 shimName = 0x0d0107010b010104;
constexpr Types::u64 shimVersion = 0x0d0107010b01010a;

std::string titleOf(const Packages& packages, const std::vector<SchemeSet>& schemes) {
    const auto* const material = packages.material();
    std::string title = material == nullptr ? "" : text(*material->set, Structural::packageName);
    for (const Types::u64 item : titles) {
        title = title.empty() ? fieldOf(schemes, item) : title;
    }
    return shown(title);
}

std::string shimOf(const std::vector<SchemeSet>& schemes) {
    const std::string name = fieldOf(schemes, shimName);
    const std::string version = fieldOf(schemes, shimVersion);
    return name.empty() || version.empty() ? name : name + " " + version;
}

/// True for a UMID whose material number is a UUID (SMPTE ST 330).
bool hasUuid(const Types::UMID32& umid) { return umid.bytes()[11] >> 4 == 2; }

/// True for a pattern of a single essence track: OP-Atom (SMPTE ST 390), or one that says so
/// (SMPTE ST 377-1).
bool isOfOneTrack(const Types::UniversalLabel& pattern) {
    constexpr Types::u8 severalTracks = 0x08; // in the label's qualifiers
    const std::string name = Structural::operationalPatternName(pattern);
    return !name.empty() && (name == "OP-Atom" || (pattern.bytes()[14] & severalTracks) == 0);
}

Essence::Material materialOf(const Packages& packages, const std::vector<Stream>& streams,
                             const Metadata::MetadataSet& preface) {
    constexpr std::size_t materialNumber = 16; // bytes from the front of a UMID
    Essence::Material material;
    const auto* const clip = packages.material();
    const auto* id = clip == nullptr ? nullptr : find(*clip->set, Structural::packageId);
    if (id != nullptr) {
        material.umid = umidUrn(*id);
    }
    const auto* const pattern = find(preface, Structural::operationalPattern);
    if (streams.size() != 1 || streams.front().isExternal || pattern == nullptr ||
        !isOfOneTrack(*pattern)) {
        return material;
    }
    for (const auto& package : packages.all()) {
        id = package.isFile ? find(*package.set, Structural::packageId) : nullptr;
        if (id != nullptr && hasUuid(*id)) {
            material.uuid = uuidUrn(id->bytes().data() + materialNumber);
        }
    }
    return material;
}

std::vector<std::string> sourcesOf(Walk& walk, const Packages& packages) {
    std::vector<std::string> sources;
    for (const auto& package : packages.all()) {
        if (package.isMaterial || package.isFile || package.descriptor == nullptr ||
            sources.size() == mostSources) {
            continue;
        }
        std::string source = describe(package);
        for (const auto* locator : walk.next(*package.descriptor, Structural::locators)) {
            const std::string url = text(*locator, Structural::url);
            if (!url.empty()) {
                source += " " + shown(url);
                break;
            }
        }
        sources.push_back(source);
    }
    return sources;
}

} // namespace

Essence describeEssence(const Metadata::PartitionMetadata& metadata,
                        const Metadata::MetadataSet& preface) {
    Walk walk(metadata);
    const Packages packages(walk, preface);
    Essence essence;
    Schemes schemes = describeSchemes(walk, packages);
    essence.streams =
        describeStreams(walk, packages, preface, schemes.encryptions, essence.contradictions);
    essence.timing = describeTiming(packages);
    essence.schemes = std::move(schemes.sets);
    essence.title = titleOf(packages, essence.schemes);
    essence.shim = shimOf(essence.schemes);
    essence.sources = sourcesOf(walk, packages);
    essence.material = materialOf(packages, essence.streams, preface);
    return essence;
}

} // namespace Corvid::Inspection
