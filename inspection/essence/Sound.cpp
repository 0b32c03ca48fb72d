#include "inspection/essence/Sound.h"

#include "host/metadata/Names.h"
#include "inspection/essence/Describe.h"
#include "inspection/essence/EssenceProperties.h"
#include "inspection/essence/ShownText.h"

#include <algorithm>
#include <map>

namespace Corvid::Inspection {

namespace {

using Metadata::MetadataSet;
using Structural::SetClass;

Sound::Group groupOf(const MetadataSet& set) {
    using namespace Structural;
    const auto either = [&](const auto& first, const auto& second) {
        const std::string found = shownText(set, first);
        return found.empty() ? shownText(set, second) : found;
    };
    return {shownText(set, mcaTagSymbol),
            shownText(set, mcaTagName),
            shownText(set, rfc5646SpokenLanguage),
            shownText(set, mcaTitle),
            shownText(set, mcaTitleVersion),
            either(mcaAudioContentKind, mcaContent),
            either(mcaAudioElementKind, mcaUseClass),
            {}};
}

Sound::Channel channelOf(const MetadataSet& set) {
    Sound::Channel channel{number(set, Structural::mcaChannelId),
                           shownText(set, Structural::mcaTagSymbol),
                           shownText(set, Structural::mcaTagName)};
    if (channel.symbol.size() > 2 && channel.symbol.compare(0, 2, "ch") == 0) {
        channel.symbol.erase(0, 2);
    }
    return channel;
}

using Link = std::array<Types::u8, 16>;

std::optional<Link> linkOf(const MetadataSet& set, const Structural::Property<Types::UUID>& link) {
    const auto* const value = find(set, link);
    return value == nullptr ? std::nullopt : std::make_optional(value->bytes());
}

/// Labels of groups are of one class, or of those of immersive sound that are no groups by class.
bool isGroup(const MetadataSet& set) {
    return isA(set, SetClass::soundfieldGroupLabel) || isA(set, SetClass::immersiveSoundLabel);
}

} // namespace

std::vector<Sound::Group> soundGroups(const std::vector<const MetadataSet*>& subDescriptors) {
    std::vector<Sound::Group> groups;
    std::map<Link, std::size_t> places; // in groups
    for (const MetadataSet* set : subDescriptors) {
        if (isGroup(*set)) {
            if (const auto link = linkOf(*set, Structural::mcaLinkId)) {
                places.emplace(*link, groups.size());
            }
            groups.push_back(groupOf(*set));
        }
    }
    Sound::Group others;
    for (const MetadataSet* set : subDescriptors) {
        if (!isA(*set, SetClass::audioChannelLabel)) {
            continue;
        }
        const auto link = linkOf(*set, Structural::soundfieldGroupLinkId);
        const auto place = link ? places.find(*link) : places.end();
        auto& group = place == places.end() ? others : groups[place->second];
        group.channels.push_back(channelOf(*set));
        if (group.language.empty()) {
            group.language = shownText(*set, Structural::rfc5646SpokenLanguage);
        }
    }
    if (!others.channels.empty()) {
        groups.push_back(std::move(others));
    }
    for (auto& group : groups) {
        std::stable_sort(group.channels.begin(), group.channels.end(),
                         [](const auto& a, const auto& b) { return a.number < b.number; });
    }
    return groups;
}

Sound describeSound(const MetadataSet& set, const std::vector<const MetadataSet*>& subDescriptors,
                    Contradictions& contradictions) {
    Sound sound;
    if (const auto* rate = find(set, Structural::audioSampleRate)) {
        sound.sampleRate = *rate;
    }
    if (const auto bits = number(set, Structural::quantizationBits); bits && *bits != 0) {
        sound.bits = bits;
    }
    sound.channels = number(set, Structural::channelCount);
    sound.isObjectBased = isA(set, SetClass::immersiveSoundDescriptor) && sound.channels == 0U;
    sound.locked = number(set, Structural::locked);
    sound.groups = soundGroups(subDescriptors);
    const auto labels = static_cast<std::size_t>(
        std::count_if(subDescriptors.begin(), subDescriptors.end(),
                      [](const auto* each) { return isA(*each, SetClass::audioChannelLabel); }));
    if (sound.channels && labels > *sound.channels) {
        contradictions.push_back({className(set), "ChannelCount",
                                  "ChannelCount says " + std::to_string(*sound.channels) +
                                      ", but " + std::to_string(labels) + " channels have labels"});
    }
    return sound;
}

} // namespace Corvid::Inspection
