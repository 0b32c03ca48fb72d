#include "inspection/RegisteredName.h"
#include "inspection/StructuralLabels.h"
#include "inspection/Summary.h"
#include "tools/corvid/reports/EssenceText.h"
#include "tools/corvid/terminal/Lines.h"
#include "tools/corvid/terminal/Printable.h"
#include "tools/corvid/terminal/Style.h"
#include "tools/corvid/terminal/Table.h"

#include <algorithm>
#include <cmath>
#include <fmt/core.h>
#include <tuple>

namespace Corvid::Tool {

namespace {

using Inspection::registeredName;
using Inspection::Summary;

/// More partitions than these are not taken in at a glance: those in the middle are counted only.
constexpr std::size_t partitionsShown = 12;
constexpr std::size_t partitionsAtEitherEnd = 4;

std::string timeText(double seconds) {
    const auto milliseconds = std::llround(seconds * 1000);
    return fmt::format("{:02}:{:02}:{:02}.{:03}", milliseconds / 3600000, milliseconds / 60000 % 60,
                       milliseconds / 1000 % 60, milliseconds % 1000);
}

std::string rateText(const std::optional<Types::Rational>& rate) {
    if (!rate) {
        return "";
    }
    return rate->denominator() == 1 ? fmt::format("{}", rate->numerator())
                                    : fmt::format("{}/{}", rate->numerator(), rate->denominator());
}

std::string durationText(const Summary::Track& track) {
    if (!track.duration) {
        return track.editRate ? "unknown" : "";
    }
    const auto time = Inspection::seconds(*track.duration, track.editRate);
    return time ? fmt::format("{} ({})", *track.duration, timeText(*time))
                : fmt::format("{}", *track.duration);
}

/// "8 Sequence" and "1 Preface": the most frequent first.
std::vector<std::string> countTexts(const std::map<std::string, std::size_t>& counts) {
    std::vector<std::pair<std::string, std::size_t>> sorted(counts.begin(), counts.end());
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const auto& a, const auto& b) { return a.second > b.second; });
    std::vector<std::string> texts;
    std::transform(sorted.begin(), sorted.end(), std::back_inserter(texts), [](const auto& entry) {
        return fmt::format("{} {}", entry.second, printable(entry.first));
    });
    return texts;
}

std::string descriptorText(const Summary::Descriptor& descriptor) {
    std::string text = descriptor.className;
    if (!descriptor.subDescriptors.empty()) {
        std::map<std::string, std::size_t> counts;
        for (const auto& sub : descriptor.subDescriptors) {
            ++counts[sub];
        }
        text += " with " + joined(countTexts(counts), ", ");
    }
    std::vector<std::string> parts;
    std::transform(descriptor.parts.begin(), descriptor.parts.end(), std::back_inserter(parts),
                   descriptorText);
    return parts.empty() ? text : text + " of " + joined(parts, " | ");
}

/// The label, and what the registers call it.
std::string labelText(const Types::UniversalLabel& label) {
    const std::string name = registeredName(label);
    return Platform::toUtf8(label.toString()) + (name.empty() ? "" : "  " + name);
}

std::string head(const Summary& summary) {
    std::string text;
    const auto line = [&](const char* name, const std::string& what) {
        if (!what.empty()) {
            text += fmt::format("  {:<20}{}\n", name, what);
        }
    };
    const auto labels = [&](const char* name, const std::vector<Types::UniversalLabel>& all) {
        for (const auto& label : all) {
            line(name, labelText(label));
            name = "";
        }
    };
    const auto& pattern = summary.operationalPattern;
    const std::string name = Inspection::Structural::operationalPatternName(pattern);
    const std::string words = Inspection::Structural::operationalPatternWords(pattern);
    line("Operational pattern", name.empty() ? labelText(pattern) : name + " (" + words + ")");
    line("", name.empty() ? "" : labelText(pattern));
    for (const auto& writer : summary.writers) {
        const std::string version = writer.version.empty() ? writer.productVersion : writer.version;
        line("Written by",
             printable(joined({writer.company, writer.product, version}, " / ") +
                       (writer.toolkitVersion.empty() ? "" : ", toolkit " + writer.toolkitVersion) +
                       (writer.platform.empty() ? "" : ", " + writer.platform) +
                       (writer.date.empty() ? "" : ", " + writer.date)));
    }
    const auto& used = summary.partitions[summary.metadataPartition].pack;
    line("Metadata",
         fmt::format("from partition {} ({}, {}){}", summary.metadataPartition, used.kindName(),
                     used.statusName(), summary.metadataIsWhole ? "" : ", not whole"));
    labels("Essence containers", summary.essenceContainers);
    labels("Descriptive schemes", summary.descriptiveSchemes);
    labels("Conforms to", summary.conformsTo);
    line("Run-in", summary.runIn == 0 ? "" : fmt::format("{} bytes", summary.runIn));
    return text;
}

std::string partitions(const Summary& summary, const Style& style) {
    Table table(2);
    table.add({"#", "Partition", "Status", "Offset", "Metadata bytes", "Index bytes", "Body SID"});
    const auto& all = summary.partitions;
    const auto number = [](std::uint64_t n) { return n == 0 ? "" : fmt::format("{}", n); };
    for (std::size_t i = 0; i != all.size(); ++i) {
        if (all.size() > partitionsShown && i == partitionsAtEitherEnd) {
            const std::size_t left = all.size() - 2 * partitionsAtEitherEnd;
            table.add({"...", fmt::format("{} more", left)});
            i += left;
        }
        const auto& pack = all[i].pack;
        table.add({fmt::format("{}", i), pack.kindName(), pack.statusName(),
                   fmt::format("{}", all[i].offset()), number(pack.headerByteCount),
                   number(pack.indexByteCount), number(pack.bodySid)});
    }
    return table.toString(style.heading, style.end);
}

/// The labels of a descriptor and its parts in their order; equal ones are counted.
class LabelCounts {
public:
    explicit LabelCounts(const Summary::Descriptor& descriptor) { add(descriptor); }

    const auto& counts() const noexcept { return counts_; }

private:
    using Key = std::tuple<std::string_view, std::string_view, std::array<Types::u8, 16>>;

    void add(const Summary::Descriptor& descriptor) {
        for (const Summary::Label& label : descriptor.labels) {
            const auto [place, isNew] = places_.try_emplace(
                Key(label.className, label.property, label.label.bytes()), counts_.size());
            if (isNew) {
                counts_.emplace_back(&label, 0);
            }
            ++counts_[place->second].second;
        }
        for (const Summary::Descriptor& part : descriptor.parts) {
            add(part);
        }
    }

    std::vector<std::pair<const Summary::Label*, std::size_t>> counts_;
    std::map<Key, std::size_t> places_; // in counts_
};

std::string descriptorLabels(const Summary::Descriptor& descriptor, const Style& style) {
    const LabelCounts labels(descriptor);
    Table table(2);
    table.add({"Labels of", "Property", "Label", "Name", "Times"});
    std::string above;
    for (const auto& [label, times] : labels.counts()) {
        table.add({label->className == above ? "" : label->className, label->property,
                   Platform::toUtf8(label->label.toString()), registeredName(label->label),
                   times == 1 ? "" : fmt::format("{}", times)});
        above = label->className;
    }
    return labels.counts().empty() ? "" : table.toString(style.quiet, style.end);
}

std::string package(const Summary::Package& package, const Style& style) {
    std::string kind = package.kind + " package";
    kind[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(kind[0])));
    std::string text = "\n" + style.heading + printable(kind) + style.end;
    text += package.name.empty() ? "" : " \"" + printable(package.name) + "\"";
    text += package.created.empty() ? "" : ", created " + package.created;
    text += "\n";
    if (!package.tracks.empty()) {
        Table table(2);
        table.add({"Track", "Kind", "Edit rate", "Duration", "Start", "Name"});
        for (const auto& track : package.tracks) {
            table.add({track.id ? fmt::format("{}", *track.id) : "?", track.kind,
                       rateText(track.editRate), durationText(track),
                       track.timecode ? timecodeText(*track.timecode) : "", track.name});
        }
        text += table.toString(style.quiet, style.end);
    }
    if (package.descriptor) {
        text += "  Descriptor  " + printable(descriptorText(*package.descriptor)) + "\n" +
                descriptorLabels(*package.descriptor, style);
    }
    return text;
}

std::string oddities(const Summary& summary, const Style& style) {
    std::string text;
    const auto section = [&](const char* name, const auto& entries, const auto& describe) {
        if (entries.empty()) {
            return;
        }
        text += style.odd + name + style.end + "\n";
        for (const auto& [key, value] : entries) {
            const std::string known = registeredName(key);
            text += "  " + printable(key) + (known.empty() ? "" : " (" + known + ")") +
                    describe(value) + "\n";
        }
    };
    const auto times = [](std::size_t count) {
        return count == 1 ? std::string() : fmt::format(", {} times", count);
    };
    section("Dark sets", summary.darkSets, [&](const Summary::Count& count) {
        return fmt::format(", {} bytes", count.bytes) + times(count.sets);
    });
    section("Unknown properties", summary.unknownProperties, times);
    section("Properties of other sets", summary.misplacedProperties, times);
    section("Properties whose value does not fit", summary.unfitProperties, times);
    return text;
}

/// What a file says of its contents first; what defines other sets, often hundreds, below it.
std::string sets(const Summary& summary, const Style& style) {
    std::map<std::string, std::size_t> others = summary.setsByKind;
    std::map<std::string, std::size_t> definitions;
    std::size_t count = 0;
    for (const std::string& kind : summary.definitionKinds) {
        count += others[kind];
        definitions[kind] = others[kind];
        others.erase(kind);
    }
    std::string text = fmt::format("{}{} sets{}\n", style.heading, summary.sets, style.end) +
                       wrapped(countTexts(others), ", ", 2);
    if (count != 0) {
        text += fmt::format("{}{} of them define others{}\n", style.quiet, count, style.end) +
                wrapped(countTexts(definitions), ", ", 2);
    }
    return text;
}

} // namespace

std::string toText(const Summary& summary, const WarningLog& warnings, const SummaryText& what) {
    const Style style(what.colours);
    std::string text = essenceText(summary, warnings, what);
    if (!what.all) {
        return text;
    }
    text += "\n" + head(summary) + "\n" + partitions(summary, style);
    for (const auto& each : summary.packages) {
        text += package(each, style);
    }
    text += "\n" + sets(summary, style);
    return text + oddities(summary, style);
}

} // namespace Corvid::Tool
