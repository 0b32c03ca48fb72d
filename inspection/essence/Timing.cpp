#include "inspection/essence/Timing.h"

#include "inspection/essence/Describe.h"
#include "inspection/essence/Packages.h"

namespace Corvid::Inspection {

namespace {

using Package = Packages::Package;
using Track = Packages::Track;

/// Where in a package a clip begins.
struct Place {
    const Package* package;
    Types::int64 position; ///< in edit units of the rate
    std::optional<Types::Rational> rate;
};

std::optional<Timecode> timecodeOf(const Track& track) {
    if (track.component == nullptr || !isA(*track.component, Structural::SetClass::timecode)) {
        return std::nullopt;
    }
    return Timecode{number(*track.component, Structural::startTimecode).value_or(0),
                    number(*track.component, Structural::framesPerSecond).value_or(0),
                    number(*track.component, Structural::dropFrame).value_or(false)};
}

/// The units of a place in another rate; 0 is 0 in any.
std::optional<Types::int64> positionIn(const Place& place,
                                       const std::optional<Types::Rational>& rate) {
    if (place.position == 0) {
        return 0;
    }
    return place.rate && rate ? converted(place.position, *place.rate, *rate) : std::nullopt;
}

/// The sum, unless it is too great.
std::optional<Types::int64> sum(const std::optional<Types::int64>& a,
                                const std::optional<Types::int64>& b) {
    const auto isSmall = [](Types::int64 number) {
        constexpr Types::int64 most = Types::int64{1} << 62;
        return number > -most && number < most;
    };
    return a && b && isSmall(*a) && isSmall(*b) ? std::make_optional(*a + *b) : std::nullopt;
}

/// The timecode of a package at a place in it.
std::optional<Timing::Start> startIn(const Place& place) {
    for (const Track& track : place.package->tracks) {
        auto timecode = timecodeOf(track);
        if (!timecode) {
            continue;
        }
        const auto rate = frameRate(*timecode, track.editRate);
        const auto begun = positionIn({nullptr, track.origin, track.editRate}, rate);
        const auto frames = sum(sum(timecode->start, begun), positionIn(place, rate));
        if (frames) {
            timecode->start = *frames;
            return Timing::Start{*timecode, describe(*place.package), rate};
        }
    }
    return std::nullopt;
}

/// Follows the source clips of a track to a package with a timecode.
std::optional<Timing::Start> startThrough(const Packages& packages, const Track& first) {
    const Track* track = &first;
    Types::int64 position = 0; // in edit units of the track
    for (int i = 0; i != longestChain; ++i) {
        const auto source = packages.sourceOf(*track);
        const auto begin = source ? sum(source->start, position) : std::nullopt;
        if (!begin || source->package == nullptr) {
            return std::nullopt;
        }
        const Place place{source->package, *begin, track->editRate};
        if (auto start = startIn(place)) {
            return start;
        }
        const Track* const next = source->track ? source->package->find(*source->track) : nullptr;
        const auto there = next == nullptr ? std::nullopt : positionIn(place, next->editRate);
        if (!there) {
            return std::nullopt;
        }
        track = next;
        position = *there;
    }
    return std::nullopt;
}

std::optional<Timing::Start> startOf(const Packages& packages, const Package& clip) {
    if (auto start = startIn({&clip, 0, {}})) {
        return start;
    }
    std::size_t tried = 0;
    for (const Track& track : clip.tracks) {
        if (track.isEssence() && tried++ != mostTracks) {
            if (auto start = startThrough(packages, track)) {
                return start;
            }
        }
        if (tried > mostTracks) {
            break;
        }
    }
    return std::nullopt;
}

/// The track that a clip's length is that of: its first picture, else sound, else data, else any.
const Track* mainTrack(const Package& package) {
    for (const char* kind : {"Picture", "Sound", "Data", "Timecode"}) {
        for (const Track& track : package.tracks) {
            if (track.kind == kind) {
                return &track;
            }
        }
    }
    return nullptr;
}

/// True where a length says something that another does not.
bool differ(const Timing::Length& a, const Timing::Length& b) {
    if (!b.units || !a.units || !a.rate || !b.rate || !isRate(*a.rate) || !isRate(*b.rate)) {
        return b.units.has_value();
    }
    const auto forth = converted(*a.units, *a.rate, *b.rate);
    const auto back = converted(*b.units, *b.rate, *a.rate);
    return forth != b.units && back != a.units;
}

/// The length of the essence that a clip's track plays: what its descriptor says, else its track.
std::optional<Timing::Length> essenceLength(const Packages& packages, const Track& track) {
    const auto source = packages.sourceOf(track);
    if (!source || source->package == nullptr || !source->package->isFile || !source->track) {
        return std::nullopt;
    }
    const Track* const played = source->package->find(*source->track);
    if (played == nullptr) {
        return std::nullopt;
    }
    const auto said = number(*source->package->descriptor, Structural::essenceLength);
    return Timing::Length{said && *said >= 0 ? said : played->length, played->editRate};
}

} // namespace

Timing describeTiming(const Packages& packages) {
    Timing timing;
    const Package* clip = packages.material();
    if (clip == nullptr) {
        if (packages.all().empty()) {
            return timing;
        }
        clip = &packages.all().front();
    }
    timing.start = startOf(packages, *clip);
    const Track* const track = mainTrack(*clip);
    if (track == nullptr) {
        return timing;
    }
    timing.clip = {track->length, track->editRate};
    const auto essence = essenceLength(packages, *track);
    if (essence && differ(timing.clip, *essence)) {
        timing.essence = essence;
    }
    if (timing.start && timing.start->rate && timing.clip.units && timing.clip.rate) {
        timing.frames = converted(*timing.clip.units, *timing.clip.rate, *timing.start->rate);
    }
    return timing;
}

} // namespace Corvid::Inspection
