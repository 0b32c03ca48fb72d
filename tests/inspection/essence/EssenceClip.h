#pragma once

#include "host/dataio/MemorySource.h"
#include "inspection/Summary.h"
#include "inspection/essence/EssenceProperties.h"
#include "tests/support/ClipBuilder.h"

namespace Corvid::Testing {

namespace Item = Inspection::Structural;
using Properties = ClipBuilder::Properties;

inline constexpr unsigned char sourceClipSet = 0x11;
inline constexpr unsigned char timecodeSet = 0x14;
inline constexpr unsigned char materialPackageSet = 0x36;
inline constexpr unsigned char sourcePackageSet = 0x37;
inline constexpr unsigned char sequenceSet = 0x0F;

/// Labels of data definitions (SMPTE ST 400).
inline Bytes dataDefinition(std::uint64_t back) {
    return join({hex("060e2b34 04010101"), number(back, 8)});
}
inline constexpr std::uint64_t pictureTrack = 0x0103020201000000;
inline constexpr std::uint64_t soundTrack = 0x0103020202000000;
inline constexpr std::uint64_t timecodeTrack = 0x0103020101000000;

inline Bytes rational(unsigned numerator, unsigned denominator) {
    return join({number(numerator, 4), number(denominator, 4)});
}
/// The UMID of a package.
inline Bytes umid(unsigned package) {
    return join({hex("060a2b34 01010105 01010f20 13000000"), uuid(package)});
}

/// A clip of one material package and others, put together track by track.
class EssenceClip : public ClipBuilder {
public:
    struct Rate {
        unsigned numerator = 25;
        unsigned denominator = 1;
    };

    unsigned timecode(Rate rate, std::uint64_t start, unsigned framesPerSecond, bool drop,
                      std::uint64_t length = 100) {
        const unsigned component =
            add(timecodeSet, {{Item::dataDefinition.item, dataDefinition(timecodeTrack)},
                              {Item::duration.item, number(length, 8)},
                              {Item::startTimecode.item, number(start, 8)},
                              {Item::framesPerSecond.item, number(framesPerSecond, 2)},
                              {Item::dropFrame.item, number(drop ? 1 : 0, 1)}});
        return track(100, rate, component);
    }
    unsigned clip(unsigned id, Rate rate, std::uint64_t kind, std::uint64_t length,
                  const Bytes& package = Bytes(32), unsigned sourceTrack = 0,
                  std::uint64_t start = 0) {
        const unsigned component =
            add(sourceClipSet, {{Item::dataDefinition.item, dataDefinition(kind)},
                                {Item::duration.item, number(length, 8)},
                                {Item::sourcePackageId.item, package},
                                {Item::sourceTrackId.item, number(sourceTrack, 4)},
                                {Item::startPosition.item, number(start, 8)}});
        return track(id, rate, component);
    }
    unsigned track(unsigned id, Rate rate, unsigned segment) {
        return add(timelineTrackSet,
                   {{Item::trackId.item, number(id, 4)},
                    {Item::editRate.item, rational(rate.numerator, rate.denominator)},
                    {Item::trackSegment.item, uuid(segment)}});
    }
    void package(unsigned char kind, const Bytes& id, const std::vector<unsigned>& tracks,
                 Properties more = {}) {
        more.emplace_back(Item::packageId.item, id);
        more.emplace_back(Item::tracks.item, references(tracks));
        packages_.push_back(add(kind, more));
    }

    /// What the clip is, read from the file that holds it.
    Inspection::Essence essence(Properties storage = {}) {
        storage.emplace_back(Item::packages.item, references(packages_));
        const unsigned content = add(contentStorageSet, storage);
        add(prefaceSet,
            {{Item::contentStorage.item, uuid(content)},
             {Item::operationalPattern.item, hex("060e2b34 04010101 0d010201 01010100")}});
        const Bytes bytes = build();
        mxf::NoWarnings warnings;
        mxf::File file(Templates::auto_ptr<DataIO::RandomAccessSource>(
                           new DataIO::MemorySource(bytes.data(), bytes.size())),
                       MetaMetadata::Dictionary::builtIn(), warnings);
        return Inspection::summarise(file, file.readMetadata()).essence;
    }

private:
    std::vector<unsigned> packages_;
};

/// The essence of a clip with one stream that a descriptor describes.
inline Inspection::Essence essenceOf(
    unsigned char descriptorSet, Properties properties,
    const std::vector<std::pair<unsigned char, Properties>>& subDescriptors = {},
    std::uint64_t kind = pictureTrack) {
    EssenceClip clip;
    std::vector<unsigned> subs;
    for (const auto& [set, values] : subDescriptors) {
        subs.push_back(clip.add(set, values));
    }
    properties.emplace_back(Item::subDescriptors.item, ClipBuilder::references(subs));
    properties.emplace_back(Item::linkedTrackId.item, number(1, 4));
    const unsigned descriptor = clip.add(descriptorSet, properties);
    clip.package(materialPackageSet, umid(1), {clip.clip(1, {}, kind, 10, umid(2), 1)});
    clip.package(sourcePackageSet, umid(2), {clip.clip(1, {}, kind, 10)},
                 {{Item::descriptor.item, uuid(descriptor)}});
    return clip.essence();
}

} // namespace Corvid::Testing
