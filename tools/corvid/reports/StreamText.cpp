#include "tools/corvid/reports/StreamText.h"

#include "tools/corvid/terminal/Lines.h"

#include <algorithm>
#include <fmt/core.h>

namespace Corvid::Tool {

namespace {

using Inspection::Picture;
using Inspection::Sound;
using Inspection::Stream;
using Lines = std::vector<std::string>;

/// More groups of sound channels, and names of tracks, are counted only.
constexpr std::size_t groupsShown = 4;
constexpr std::size_t tracksShown = 6;

/// Up to three decimals, without zeros at the end.
std::string decimal(double value) {
    std::string text = fmt::format("{:.3f}", value);
    text.erase(text.find_last_not_of('0') + 1);
    return text.back() == '.' ? text.substr(0, text.size() - 1) : text;
}

/// A whole number of steps of 1/10^digits as decimal text.
std::string inSteps(std::uint64_t steps, unsigned digits) {
    std::string text = fmt::format("{:0{}}", steps, digits + 1);
    text.insert(text.size() - digits, ".");
    text.erase(text.find_last_not_of('0') + 1);
    return text.back() == '.' ? text.substr(0, text.size() - 1) : text;
}

std::string ratioText(const Types::Rational& ratio, const char* between) {
    return fmt::format("{}{}{}", ratio.numerator(), between, ratio.denominator());
}

template <class Number> std::string orUnknown(const std::optional<Number>& number) {
    return number ? fmt::format("{}", *number) : "?";
}

std::string sizeText(const Picture::Area& area) {
    return orUnknown(area.width) + " x " + orUnknown(area.height);
}

std::string storedText(const Picture& picture) {
    const Picture::Area size = picture.size();
    const bool differs = picture.stored && (picture.stored->width != size.width ||
                                            picture.stored->height != size.height);
    return differs ? "stored " + sizeText(*picture.stored) : "";
}

std::string scanText(const Picture& picture) {
    using Layout = Picture::Layout;
    if (!picture.layout) {
        return "scan not stated";
    }
    switch (*picture.layout) {
    case Layout::fullFrame:
        return "progressive";
    case Layout::segmentedFrame:
        return "progressive, segmented frames";
    case Layout::singleField:
        return "single field";
    case Layout::separateFields:
    case Layout::mixedFields:
        break;
    }
    return "interlaced, " + (picture.firstField ? fmt::format("field {} first", *picture.firstField)
                                                : std::string("field order not stated"));
}

std::string depthText(const Picture& picture) {
    std::string text;
    for (const auto& depth : picture.depths) {
        text += (text.empty() ? "" : " or ") +
                fmt::format("{} bit{}", depth.bits, depth.isFloat ? " float" : "");
    }
    const std::string& kind = picture.sampling.empty() ? picture.components : picture.sampling;
    return joined({text, kind}, " ");
}

std::string colourText(const Picture::Colour& colour) {
    const bool isOne = !colour.primaries.empty() && colour.primaries == colour.transfer &&
                       (colour.matrix.empty() || colour.matrix == colour.primaries);
    if (isOne) {
        return colour.primaries;
    }
    const auto part = [](const char* name, const std::string& value) {
        return value.empty() ? "" : name + value;
    };
    return joined({part("primaries ", colour.primaries), part("transfer ", colour.transfer),
                   part("matrix ", colour.matrix)},
                  ", ");
}

std::string pointText(const char* name, const Picture::Mastering::Point& point) {
    constexpr unsigned digits = 5; // 0.00002
    return fmt::format("{} {}/{}", name, inSteps(point.x * 2UL, digits),
                       inSteps(point.y * 2UL, digits));
}

std::string masteringText(const Picture::Mastering& mastering) {
    constexpr unsigned digits = 4; // 0.0001 cd/m2
    const auto luminance = [](const std::optional<Types::u32>& steps) {
        return steps ? inSteps(*steps, digits) : "?";
    };
    Lines parts;
    if (mastering.brightest || mastering.darkest) {
        parts.push_back(fmt::format("{}-{} cd/m²", luminance(mastering.darkest),
                                    luminance(mastering.brightest)));
    }
    constexpr const char* names[] = {"R", "G", "B"};
    std::string primaries;
    for (std::size_t i = 0; i != mastering.primaries.size(); ++i) {
        primaries += (i == 0 ? "" : " ") + pointText(names[i], mastering.primaries[i]);
    }
    parts.push_back(primaries);
    if (mastering.white) {
        parts.push_back(pointText("white", *mastering.white));
    }
    return "mastered on " + joined(parts, ", ");
}

void addPicture(const Stream& stream, Lines& lines) {
    const Picture& picture = *stream.picture;
    const auto& ratio = picture.aspectRatio;
    lines.push_back(
        joined({stream.codec.empty() ? "coding not stated" : stream.codec, sizeText(picture.size()),
                storedText(picture), ratio ? ratioText(*ratio, ":") : "",
                picture.rate ? frameRateText(*picture.rate) : "rate not stated"},
               ", "));
    lines.push_back(scanText(picture));
    const std::string levels = picture.black && picture.white
                                   ? fmt::format("levels {}-{}", *picture.black, *picture.white)
                                   : "";
    const std::string format =
        picture.activeFormat ? fmt::format("AFD {}", *picture.activeFormat) : "";
    const std::string samples =
        joined({depthText(picture), colourText(picture.colour), levels, format}, ", ");
    lines.push_back(samples.empty() ? "bits not stated" : samples);
    if (picture.mastering) {
        lines.push_back(masteringText(*picture.mastering));
    }
    if (picture.maxCLL || picture.maxFALL) {
        lines.push_back("MaxCLL " + orUnknown(picture.maxCLL) + ", MaxFALL " +
                        orUnknown(picture.maxFALL) + " cd/m²");
    }
}

std::string channelsText(const Sound& sound, std::size_t count) {
    if (sound.isObjectBased) {
        return "object-based";
    }
    if (!sound.channels) {
        return "channels not stated";
    }
    return fmt::format("{} {}{}", *sound.channels, *sound.channels == 1 ? "channel" : "channels",
                       count > 1 ? " each" : "");
}

/// What some writers put where they have no text.
std::string meaning(const std::string& text) { return text == "n/a" ? "" : text; }

std::string aboutText(const Sound::Group& group) {
    const std::string title = meaning(group.title);
    const std::string version = meaning(group.version);
    const std::string program =
        joined({meaning(group.language), title.empty() ? "" : '"' + title + '"',
                version.empty() ? "" : "version \"" + version + '"'},
               ", ");
    return joined({program, joined({meaning(group.contentKind), meaning(group.elementKind)}, ", ")},
                  "; ");
}

void addGroups(const std::vector<Sound::Group>& groups, Lines& lines) {
    for (std::size_t i = 0; i != std::min(groups.size(), groupsShown); ++i) {
        const Sound::Group& group = groups[i];
        Lines channels;
        for (const auto& channel : group.channels) {
            channels.push_back(joined({channel.number ? fmt::format("{}", *channel.number) : "",
                                       channel.symbol.empty() ? channel.name : channel.symbol},
                                      " "));
        }
        const std::string name = group.name.empty() ? group.symbol : group.name;
        const std::string list = joined(channels, "  ");
        const std::string about = aboutText(group);
        lines.push_back(list.empty() ? joined({name, about}, ": ")
                                     : joined({name.empty() ? "channels" : name, list}, ": "));
        if (!list.empty() && !about.empty()) {
            lines.push_back(about);
        }
    }
    if (groups.size() > groupsShown) {
        lines.push_back(fmt::format("{} more groups", groups.size() - groupsShown));
    }
}

void addSound(const Stream& stream, std::size_t count, Lines& lines) {
    const Sound& sound = *stream.sound;
    const std::string bits = sound.bits ? fmt::format("{} bit", *sound.bits) : "";
    const bool isRate = sound.sampleRate && sound.sampleRate->denominator() > 0;
    lines.push_back(
        joined({joined({stream.codec.empty() ? "coding not stated" : stream.codec, bits}, " "),
                isRate ? decimal(static_cast<double>(sound.sampleRate->numerator()) /
                                 sound.sampleRate->denominator() / 1000) +
                             " kHz"
                       : "sample rate not stated",
                channelsText(sound, count), sound.locked == true ? "locked" : "",
                stream.wrapping == Stream::Wrapping::clip ? "clip-wrapped" : ""},
               ", "));
    addGroups(sound.groups, lines);
}

void addData(const Stream& stream, Lines& lines) {
    const auto& data = *stream.data;
    std::string kind = stream.container.empty() ? stream.codec : stream.container;
    kind = kind.empty() ? stream.className : kind;
    lines.push_back(joined({kind, stream.codec == kind ? "" : stream.codec,
                            data.languages.empty() ? "" : "language " + data.languages,
                            stream.editRate && stream.editRate->denominator() > 0
                                ? frameRateText(*stream.editRate)
                                : ""},
                           ", "));
    if (!data.namespaceUri.empty()) {
        lines.push_back(data.namespaceUri);
    }
    addGroups(data.groups, lines);
}

std::string dotted(const Types::UniversalLabel& label) {
    return Platform::toUtf8(label.toString());
}

/// "5", "2001-2002", "2, 4, 6"
std::string numbersText(const std::vector<Types::u32>& ids) {
    const bool isRange = std::adjacent_find(ids.begin(), ids.end(), [](Types::u32 a, Types::u32 b) {
                             return b != a + 1;
                         }) == ids.end();
    if (ids.size() > 1 && isRange) {
        return fmt::format("{}-{}", ids.front(), ids.back());
    }
    Lines texts;
    for (const Types::u32 id : ids) {
        if (texts.size() == tracksShown) {
            texts.emplace_back("...");
            break;
        }
        texts.push_back(fmt::format("{}", id));
    }
    return joined(texts, ", ");
}

} // namespace

std::string frameRateText(const Types::Rational& rate) {
    if (rate.denominator() <= 0) {
        return ratioText(rate, "/") + " fps";
    }
    const std::string text =
        decimal(static_cast<double>(rate.numerator()) / rate.denominator()) + " fps";
    return rate.denominator() == 1 ? text : text + " (" + ratioText(rate, "/") + ")";
}

std::string trackText(const std::vector<const Stream*>& streams) {
    Lines names;
    std::vector<Types::u32> ids;
    for (const Stream* stream : streams) {
        if (!stream->trackName.empty() && (names.empty() || names.back() != stream->trackName)) {
            names.push_back(stream->trackName);
        }
        if (stream->track) {
            ids.push_back(*stream->track);
        }
    }
    if (names.size() > tracksShown) {
        names = {names.front(), "...", names.back()};
    }
    return joined({joined(names, ", "), ids.empty()       ? "no track"
                                        : ids.size() == 1 ? "track " + numbersText(ids)
                                                          : "tracks " + numbersText(ids)},
                  ", ");
}

std::vector<std::string> streamLines(const Stream& stream, std::size_t count, bool labels) {
    Lines lines;
    if (stream.className.empty()) {
        lines.emplace_back("not described");
    } else if (stream.picture) {
        addPicture(stream, lines);
    } else if (stream.sound) {
        addSound(stream, count, lines);
    } else {
        addData(stream, lines);
    }
    if (stream.isEncrypted) {
        lines.push_back("encrypted, key " +
                        (stream.encryptionKey.empty() ? "not stated" : stream.encryptionKey));
    }
    if (stream.isExternal) {
        lines.push_back("not in this file, but in " + joined(stream.locators, " or "));
    }
    if (labels && stream.codingLabel) {
        lines.push_back("coding    " + dotted(*stream.codingLabel));
    }
    if (labels && stream.containerLabel) {
        lines.push_back("container " + dotted(*stream.containerLabel));
    }
    return lines;
}

} // namespace Corvid::Tool
