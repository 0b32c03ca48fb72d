#include "tools/corvid/reports/EssenceJson.h"

#include "inspection/essence/Essence.h"

#include <nlohmann/json.hpp>

namespace Corvid::Tool {

namespace {

using Inspection::Essence;
using Inspection::Picture;
using Inspection::Sound;
using Inspection::Stream;
using Inspection::timecodeText;
using Inspection::Timing;

using Json = nlohmann::ordered_json;

Json orNull(const std::string& text) { return text.empty() ? Json(nullptr) : Json(text); }

template <class T> Json orNull(const std::optional<T>& value) {
    return value ? Json(*value) : Json(nullptr);
}

Json orNull(const std::optional<Types::Rational>& rate) {
    return rate ? Json{{"numerator", rate->numerator()}, {"denominator", rate->denominator()}}
                : Json(nullptr);
}

Json orNull(const std::optional<Types::UniversalLabel>& label) {
    return label ? Json(Platform::toUtf8(label->toString())) : Json(nullptr);
}

Json orNull(const std::optional<Picture::Area>& area) {
    if (!area) {
        return nullptr;
    }
    Json json = {{"width", orNull(area->width)}, {"height", orNull(area->height)}};
    if (area->x || area->y) {
        json["x"] = orNull(area->x);
        json["y"] = orNull(area->y);
    }
    return json;
}

Json scanOf(const Picture& picture) {
    return picture.layout ? Json(nameOf(*picture.layout)) : Json(nullptr);
}

Json toJson(const Picture::Mastering& mastering) {
    constexpr double chromaticity = 50000; // steps in 1
    constexpr double luminance = 10000;    // steps in 1 cd/m2
    const auto point = [&](const Picture::Mastering::Point& p) {
        return Json::array({p.x / chromaticity, p.y / chromaticity});
    };
    Json primaries = Json::array();
    for (const auto& each : mastering.primaries) {
        primaries.push_back(point(each));
    }
    return {{"primaries", primaries},
            {"white", mastering.white ? point(*mastering.white) : Json(nullptr)},
            {"maximum", mastering.brightest ? Json(*mastering.brightest / luminance) : nullptr},
            {"minimum", mastering.darkest ? Json(*mastering.darkest / luminance) : nullptr}};
}

void add(const Picture& picture, Json& json) {
    const Picture::Area size = picture.size();
    json["width"] = orNull(size.width);
    json["height"] = orNull(size.height);
    json["stored"] = orNull(picture.stored);
    json["sampled"] = orNull(picture.sampled);
    json["display"] = orNull(picture.display);
    json["aspectRatio"] = orNull(picture.aspectRatio);
    json["rate"] = orNull(picture.rate);
    json["scan"] = scanOf(picture);
    json["fieldOrder"] = orNull(picture.firstField);
    json["bits"] = picture.depths.empty() ? Json(nullptr) : Json(picture.depths.front().bits);
    json["float"] = !picture.depths.empty() && picture.depths.front().isFloat;
    json["sampling"] = orNull(picture.sampling);
    json["components"] = orNull(picture.components);
    json["primaries"] = orNull(picture.colour.primaries);
    json["transfer"] = orNull(picture.colour.transfer);
    json["matrix"] = orNull(picture.colour.matrix);
    json["black"] = orNull(picture.black);
    json["white"] = orNull(picture.white);
    json["activeFormat"] = orNull(picture.activeFormat);
    json["mastering"] = picture.mastering ? toJson(*picture.mastering) : Json(nullptr);
    json["maxCLL"] = orNull(picture.maxCLL);
    json["maxFALL"] = orNull(picture.maxFALL);
}

Json toJson(const std::vector<Sound::Group>& groups) {
    Json list = Json::array();
    for (const auto& group : groups) {
        Json channels = Json::array();
        for (const auto& channel : group.channels) {
            channels.push_back({{"number", orNull(channel.number)},
                                {"symbol", orNull(channel.symbol)},
                                {"name", orNull(channel.name)}});
        }
        list.push_back({{"symbol", orNull(group.symbol)},
                        {"name", orNull(group.name)},
                        {"language", orNull(group.language)},
                        {"title", orNull(group.title)},
                        {"version", orNull(group.version)},
                        {"contentKind", orNull(group.contentKind)},
                        {"elementKind", orNull(group.elementKind)},
                        {"channels", channels}});
    }
    return list;
}

void add(const Sound& sound, Json& json) {
    json["sampleRate"] = orNull(sound.sampleRate);
    json["bits"] = orNull(sound.bits);
    json["channels"] = orNull(sound.channels);
    json["objectBased"] = sound.isObjectBased;
    json["locked"] = orNull(sound.locked);
    json["groups"] = toJson(sound.groups);
}

void add(const Stream::Data& data, Json& json) {
    json["namespace"] = orNull(data.namespaceUri);
    json["languages"] = orNull(data.languages);
    json["groups"] = toJson(data.groups);
}

Json wrappingOf(const Stream& stream) {
    return stream.wrapping == Stream::Wrapping::clip    ? Json("clip")
           : stream.wrapping == Stream::Wrapping::frame ? Json("frame")
                                                        : Json(nullptr);
}

Json toJson(const Stream& stream) {
    Json json = {{"kind", nameOf(stream.kind)},
                 {"track", orNull(stream.track)},
                 {"name", orNull(stream.trackName)},
                 {"codec", orNull(stream.codec)},
                 {"coding", orNull(stream.codingLabel)},
                 {"container", orNull(stream.containerLabel)},
                 {"wrapping", wrappingOf(stream)},
                 {"editRate", orNull(stream.editRate)},
                 {"length", orNull(stream.length)},
                 {"external", stream.isExternal},
                 {"locators", stream.locators},
                 {"encrypted", stream.isEncrypted},
                 {"encryptionKey", orNull(stream.encryptionKey)}};
    if (stream.picture) {
        add(*stream.picture, json);
    } else if (stream.sound) {
        add(*stream.sound, json);
    } else if (stream.data) {
        add(*stream.data, json);
    }
    return json;
}

Json toJson(const Timing::Length& length) {
    Json json = {{"editUnits", orNull(length.units)}, {"editRate", orNull(length.rate)}};
    json["seconds"] =
        length.units ? orNull(Inspection::seconds(*length.units, length.rate)) : Json(nullptr);
    return json;
}

Json startOf(const Timing& timing) {
    if (!timing.start) {
        return nullptr;
    }
    const auto& timecode = timing.start->timecode;
    return {{"timecode", timecodeText(timecode)},
            {"framesPerSecond", timecode.framesPerSecond},
            {"dropFrame", timecode.dropFrame},
            {"source", timing.start->source}};
}

Json durationOf(const Timing& timing) {
    Json json = toJson(timing.clip);
    json["timecode"] = nullptr;
    if (timing.start && timing.frames) {
        const auto& timecode = timing.start->timecode;
        json["timecode"] =
            timecodeText({*timing.frames, timecode.framesPerSecond, timecode.dropFrame});
    }
    json["essence"] = timing.essence ? toJson(*timing.essence) : Json(nullptr);
    return json;
}

Json toJson(const Inspection::SchemeSet& set) {
    Json fields = Json::object();
    for (const auto& field : set.fields) {
        fields[field.name] = field.value;
    }
    return {{"scheme", orNull(set.scheme)}, {"class", set.className}, {"fields", fields}};
}

} // namespace

Json toJson(const Essence& essence) {
    Json json = {{"title", orNull(essence.title)},
                 {"start", startOf(essence.timing)},
                 {"duration", durationOf(essence.timing)},
                 {"essence", Json::array()},
                 {"descriptive", Json::array()},
                 {"sources", essence.sources},
                 {"material", orNull(essence.material.umid)},
                 {"asset", orNull(essence.material.uuid)}};
    for (const Stream& stream : essence.streams) {
        json["essence"].push_back(toJson(stream));
    }
    for (const auto& set : essence.schemes) {
        json["descriptive"].push_back(toJson(set));
    }
    return json;
}

} // namespace Corvid::Tool
