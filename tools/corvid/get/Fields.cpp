#include "tools/corvid/get/Fields.h"

#include "inspection/StructuralLabels.h"
#include "tools/corvid/reports/EssenceText.h"

#include <algorithm>
#include <fmt/core.h>
#include <optional>
#include <set>

namespace Corvid::Tool {

namespace {

using Inspection::Picture;
using Inspection::Sound;
using Inspection::Stream;
using Inspection::timecodeText;
using Values = std::vector<std::string>;

Values one(std::string text) { return text.empty() ? Values() : Values{std::move(text)}; }

std::string textOf(const std::string& text) { return text; }
std::string textOf(const Types::Rational& rational) {
    return rational.denominator() == 1
               ? fmt::format("{}", rational.numerator())
               : fmt::format("{}/{}", rational.numerator(), rational.denominator());
}
template <class Number> std::string textOf(const Number& number) {
    return fmt::format("{}", number);
}
template <class Value> std::string textOf(const std::optional<Value>& value) {
    return value ? textOf(*value) : "";
}

/// Values in the order in which they come up, each once.
class Distinct {
public:
    void add(const std::string& text) {
        if (!text.empty() && seen_.insert(text).second) {
            values.push_back(text);
        }
    }

    Values values;

private:
    std::set<std::string> seen_; // no hash: a file chooses the texts
};

/// Something of each stream that says it; once where streams agree.
template <class Get> Values ofStreams(const FieldSource& source, Get get) {
    Distinct found;
    for (const Stream& stream : source.summary.essence.streams) {
        found.add(textOf(get(stream)));
    }
    return std::move(found.values);
}

template <class Get> Values ofPictures(const FieldSource& source, Get get) {
    return ofStreams(source, [&get](const Stream& stream) {
        return stream.picture ? textOf(get(*stream.picture)) : "";
    });
}

template <class Get> Values ofSounds(const FieldSource& source, Get get) {
    return ofStreams(source, [&get](const Stream& stream) {
        return stream.sound ? textOf(get(*stream.sound)) : "";
    });
}

/// Whether it is so of any stream.
template <class Is> Values ofAny(const FieldSource& source, Is is) {
    const auto& streams = source.summary.essence.streams;
    return {std::any_of(streams.begin(), streams.end(), is) ? "yes" : "no"};
}

Values codecs(const FieldSource& source, Stream::Kind kind) {
    return ofStreams(source, [kind](const Stream& stream) {
        return stream.kind == kind ? stream.codec : std::string();
    });
}

Values channels(const FieldSource& source) {
    std::uint64_t sum = 0;
    bool isStated = false;
    for (const Stream& stream : source.summary.essence.streams) {
        if (stream.sound && stream.sound->channels) {
            sum += *stream.sound->channels;
            isStated = true;
        }
    }
    return isStated ? Values{textOf(sum)} : Values();
}

Values languages(const FieldSource& source) {
    Distinct found;
    const auto addGroups = [&found](const std::vector<Sound::Group>& groups) {
        for (const auto& group : groups) {
            found.add(group.language);
        }
    };
    for (const Stream& stream : source.summary.essence.streams) {
        if (stream.sound) {
            addGroups(stream.sound->groups);
        }
        if (stream.data) {
            found.add(stream.data->languages);
            addGroups(stream.data->groups);
        }
    }
    return std::move(found.values);
}

Values start(const FieldSource& source) {
    const auto& start = source.summary.essence.timing.start;
    return start ? Values{timecodeText(start->timecode)} : Values();
}

Values duration(const FieldSource& source) {
    const auto& timing = source.summary.essence.timing;
    if (!timing.clip.units || !timing.start || !timing.frames) {
        return {};
    }
    const auto& timecode = timing.start->timecode;
    return {timecodeText({*timing.frames, timecode.framesPerSecond, timecode.dropFrame})};
}

Values seconds(const FieldSource& source) {
    const auto& clip = source.summary.essence.timing.clip;
    const auto seconds =
        clip.units ? Inspection::seconds(*clip.units, clip.rate) : std::optional<double>();
    return seconds ? Values{fmt::format("{:.3f}", *seconds)} : Values();
}

// clang-format off
constexpr Field fields[] = {
    {"file",     [](const FieldSource& s) { return Values{s.file}; }},
    {"title",    [](const FieldSource& s) { return one(s.summary.essence.title); }},
    {"start",    start},
    {"duration", duration},
    {"seconds",  seconds},
    {"codec",    [](const FieldSource& s) { return codecs(s, Stream::Kind::picture); }},
    {"width",    [](const FieldSource& s) {
         return ofPictures(s, [](const Picture& p) { return p.size().width; }); }},
    {"height",   [](const FieldSource& s) {
         return ofPictures(s, [](const Picture& p) { return p.size().height; }); }},
    {"aspect",   [](const FieldSource& s) {
         return ofPictures(s, [](const Picture& p) { return p.aspectRatio; }); }},
    {"rate",     [](const FieldSource& s) {
         return ofPictures(s, [](const Picture& p) { return p.rate; }); }},
    {"scan",     [](const FieldSource& s) {
         return ofPictures(s, [](const Picture& p) {
             return std::string(p.layout ? nameOf(*p.layout) : ""); }); }},
    {"bits",     [](const FieldSource& s) {
         return ofPictures(s, [](const Picture& p) {
             return p.depths.empty() ? std::optional<unsigned>() : p.depths.front().bits; }); }},
    {"sampling", [](const FieldSource& s) {
         return ofPictures(s, [](const Picture& p) { return p.sampling; }); }},
    {"primaries", [](const FieldSource& s) {
         return ofPictures(s, [](const Picture& p) { return p.colour.primaries; }); }},
    {"transfer", [](const FieldSource& s) {
         return ofPictures(s, [](const Picture& p) { return p.colour.transfer; }); }},
    {"matrix",   [](const FieldSource& s) {
         return ofPictures(s, [](const Picture& p) { return p.colour.matrix; }); }},
    {"sound-codec", [](const FieldSource& s) { return codecs(s, Stream::Kind::sound); }},
    {"channels", channels},
    {"sample-rate", [](const FieldSource& s) {
         return ofSounds(s, [](const Sound& sound) { return sound.sampleRate; }); }},
    {"sound-bits", [](const FieldSource& s) {
         return ofSounds(s, [](const Sound& sound) { return sound.bits; }); }},
    {"data",     [](const FieldSource& s) { return codecs(s, Stream::Kind::data); }},
    {"languages", languages},
    {"tracks",   [](const FieldSource& s) {
         return Values{textOf(s.summary.essence.streams.size())}; }},
    {"external", [](const FieldSource& s) {
         return ofAny(s, [](const Stream& stream) { return stream.isExternal; }); }},
    {"encrypted", [](const FieldSource& s) {
         return ofAny(s, [](const Stream& stream) { return stream.isEncrypted; }); }},
    {"pattern",  [](const FieldSource& s) {
         return one(Inspection::Structural::operationalPatternName(s.summary.operationalPattern)); }},
    {"rules",    [](const FieldSource& s) { return one(s.summary.essence.shim); }},
    {"sources",  [](const FieldSource& s) { return s.summary.essence.sources; }},
    {"umid",     [](const FieldSource& s) { return one(s.summary.essence.material.umid); }},
    {"asset",    [](const FieldSource& s) { return one(s.summary.essence.material.uuid); }},
    {"writer",   [](const FieldSource& s) { return one(writerText(s.summary)); }},
    {"written",  [](const FieldSource& s) {
         return s.summary.writers.empty() ? Values() : one(s.summary.writers.back().date); }},
    {"partitions", [](const FieldSource& s) {
         return Values{textOf(s.summary.partitions.size())}; }},
    {"sets",     [](const FieldSource& s) { return Values{textOf(s.summary.sets)}; }},
    {"warnings", [](const FieldSource& s) { return Values{textOf(s.warnings.entries().size())}; }},
};
// clang-format on

} // namespace

const Field* findField(const std::string& name) {
    const auto* const found =
        std::find_if(std::begin(fields), std::end(fields),
                     [&name](const Field& each) { return name == each.name; });
    return found == std::end(fields) ? nullptr : found;
}

std::string namesOfFields() {
    std::string names;
    for (const Field& each : fields) {
        names += (names.empty() ? "@" : " @") + std::string(each.name);
    }
    return names;
}

} // namespace Corvid::Tool
