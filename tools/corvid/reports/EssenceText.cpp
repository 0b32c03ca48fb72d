#include "tools/corvid/reports/EssenceText.h"

#include "inspection/StructuralLabels.h"
#include "inspection/Summary.h"
#include "tools/corvid/reports/StreamText.h"
#include "tools/corvid/reports/WarningJson.h"
#include "tools/corvid/terminal/Lines.h"
#include "tools/corvid/terminal/Printable.h"
#include "tools/corvid/terminal/Style.h"
#include "tools/corvid/terminal/WarningLog.h"

#include <algorithm>
#include <fmt/core.h>
#include <map>

namespace Corvid::Tool {

namespace {

using Inspection::Essence;
using Inspection::Stream;
using Inspection::Summary;
using Inspection::timecodeText;
using Inspection::Timing;

/// The column in which values begin.
constexpr std::size_t valueColumn = 11;

/// "13,955,331"
std::string grouped(std::int64_t number) {
    std::string text = fmt::format("{}", number);
    for (std::size_t i = text.size(); i > (number < 0 ? 4U : 3U);) {
        i -= 3;
        text.insert(i, ",");
    }
    return text;
}

using Block = SummaryBlock;

std::vector<std::string> warningLines(const Summary& summary, const WarningLog& warnings,
                                      bool areListed) {
    std::vector<std::string> lines;
    if (summary.metadataCutOffAt) {
        lines.push_back("  ! " + cutOffText(*summary.metadataCutOffAt));
    }
    const auto& entries = warnings.entries();
    if (entries.empty()) {
        return lines;
    }
    const std::string count =
        fmt::format("  ! {} {}", entries.size(), entries.size() == 1 ? "warning" : "warnings");
    if (areListed) {
        lines.push_back(count);
        for (const auto& entry : entries) {
            lines.push_back("    " + entry.first.message(entry.count - 1));
        }
    } else {
        lines.push_back(count + (entries.size() == 1 ? ": " : ", the first: ") +
                        entries.front().first.text + " [" + entries.front().first.kind->code + "]");
    }
    return lines;
}

/// "24 frames", "5,760 samples"
std::string unitsText(const Timing::Length& length) {
    constexpr int fastestPictures = 1000; // a second; what is faster are samples of sound
    const bool isRate = length.rate && Inspection::isRate(*length.rate);
    const bool isSound =
        isRate && length.rate->numerator() / length.rate->denominator() >= fastestPictures;
    const std::string unit = !isRate ? " edit unit" : isSound ? " sample" : " frame";
    return grouped(*length.units) + unit + (*length.units == 1 ? "" : "s") +
           (isRate ? "" : " of no rate");
}

/// " (0.960 s)"
std::string secondsText(const Timing::Length& length) {
    const auto seconds = Inspection::seconds(*length.units, length.rate);
    return seconds ? fmt::format(" ({:.3f} s)", *seconds) : "";
}

std::string durationText(const Timing& timing) {
    const auto& clip = timing.clip;
    std::string text = "not stated";
    if (clip.units && timing.start && timing.frames) {
        const auto& timecode = timing.start->timecode;
        text = timecodeText({*timing.frames, timecode.framesPerSecond, timecode.dropFrame}) +
               secondsText(clip);
    } else if (clip.units) {
        text = unitsText(clip) + secondsText(clip);
    }
    if (timing.essence) {
        text += "; essence " + unitsText(*timing.essence) + secondsText(*timing.essence);
    }
    return timing.start ? text : text + "; no timecode track";
}

void addTiming(const Essence& essence, std::vector<Block>& blocks) {
    const auto& start = essence.timing.start;
    if (start) {
        blocks.push_back({"Start",
                          {timecodeText(start->timecode) + " (" + start->source +
                           (start->timecode.dropFrame ? ", drop frame)" : ")")},
                          true});
    }
    blocks.push_back({"Duration", {durationText(essence.timing)}, true});
}

/// Streams of which everything but the tracks is alike fold.
void addStreams(const Essence& essence, bool labels, std::vector<Block>& blocks) {
    struct Alike {
        const Stream* first;
        std::vector<const Stream*> streams;
    };
    std::vector<Alike> all;
    std::map<std::pair<Stream::Kind, std::vector<std::string>>, std::size_t> places; // in all
    for (const Stream& stream : essence.streams) {
        const auto [place, isNew] =
            places.try_emplace({stream.kind, streamLines(stream, 1, labels)}, all.size());
        if (isNew) {
            all.push_back({&stream, {}});
        }
        all[place->second].streams.push_back(&stream);
    }
    for (const Alike& alike : all) {
        std::string name = nameOf(alike.first->kind);
        name[0] = static_cast<char>(name[0] - 'a' + 'A');
        Block block{name, {trackText(alike.streams)}};
        for (const auto& line : streamLines(*alike.first, alike.streams.size(), labels)) {
            block.lines.push_back("  " + line);
        }
        blocks.push_back(std::move(block));
    }
}

void addSchemes(const Essence& essence, std::vector<Block>& blocks) {
    for (const auto& line : schemeLines(essence.schemes)) {
        blocks.push_back({line.scheme, {joined(line.phrases, ", ")}});
    }
}

/// Takes lines out of the blocks, from the end on, so that no more than so many are left.
/// @return how many it has taken out.
std::size_t shorten(std::vector<Block>& blocks, std::size_t most) {
    std::size_t lines = 0;
    for (const Block& block : blocks) {
        lines += block.lines.size();
    }
    std::size_t gone = 0;
    for (auto block = blocks.rbegin(); block != blocks.rend() && lines > most; ++block) {
        if (!block->isVital) {
            // One more line says how many are missing.
            const std::size_t excess = lines - most + (gone == 0 ? 1 : 0);
            const std::size_t less = std::min(block->lines.size(), excess);
            lines -= less - (gone == 0 ? 1 : 0);
            gone += less;
            block->lines.resize(block->lines.size() - less);
        }
    }
    return gone;
}

std::string blockText(const Block& block, const Style& style) {
    std::string text;
    for (const std::string& line : block.lines) {
        if (!text.empty()) {
            text += printable(line) + "\n";
            continue;
        }
        const std::string name = printable(block.name);
        text = style.quiet + name + style.end +
               std::string(name.size() + 1 < valueColumn ? valueColumn - name.size() : 2, ' ') +
               printable(line) + "\n";
    }
    return text;
}

} // namespace

std::string writerText(const Summary& summary) {
    if (summary.writers.empty()) {
        return "";
    }
    const auto& writer = summary.writers.back();
    const std::string version = writer.version.empty() ? writer.productVersion : writer.version;
    const bool repeats = !writer.company.empty() &&
                         writer.product.compare(0, writer.company.size(), writer.company) == 0;
    return joined(
        {repeats ? "" : writer.company, writer.product, version.substr(0, version.find(" ("))},
        " ");
}

std::string kindText(const Summary& summary) {
    const std::string pattern =
        Inspection::Structural::operationalPatternName(summary.operationalPattern);
    const auto& essence = summary.essence;
    const std::string shim = essence.shim.empty() ? "" : "AS-11 " + essence.shim;
    return joined({joined({"MXF", pattern}, " "), shim, writerText(summary)}, ", ");
}

std::vector<SummaryBlock> summaryBlocks(const Summary& summary, bool labels) {
    const Essence& essence = summary.essence;
    std::vector<Block> blocks;
    if (!essence.title.empty()) {
        blocks.push_back({"Title", {essence.title}, true});
    }
    if (!summary.packages.empty()) {
        addTiming(essence, blocks);
    }
    addStreams(essence, labels, blocks);
    addSchemes(essence, blocks);
    for (const auto& source : essence.sources) {
        blocks.push_back({"Source", {source}});
    }
    const auto& material = essence.material;
    if (!material.uuid.empty()) {
        blocks.push_back({"Asset", {material.uuid}, true});
    } else if (!material.umid.empty()) {
        blocks.push_back({"Material", {material.umid}, true});
    }
    return blocks;
}

std::string essenceText(const Summary& summary, const WarningLog& warnings,
                        const SummaryText& what) {
    const Style style(what.colours);
    std::string text =
        style.heading + printable(summary.file + "  " + kindText(summary)) + style.end + "\n";
    const auto notes = warningLines(summary, warnings, what.warnings || what.all);
    for (const std::string& note : notes) {
        text += style.odd + printable(note) + style.end + "\n";
    }
    auto blocks = summaryBlocks(summary, what.labels);
    const std::size_t shortest = 1 + std::min<std::size_t>(notes.size(), 2);
    const std::size_t gone = what.all ? 0 : shorten(blocks, mostLines - shortest);
    bool isSaid = gone == 0;
    const auto sayWhatIsGone = [&] {
        if (!isSaid) {
            text += fmt::format("  {} more {}: --all\n", gone, gone == 1 ? "line" : "lines");
            isSaid = true;
        }
    };
    bool isFront = true;
    for (const Block& block : blocks) {
        isFront = isFront && block.isVital;
        if (!isFront && block.isVital) {
            sayWhatIsGone();
        }
        text += blockText(block, style);
    }
    sayWhatIsGone();
    return text;
}

} // namespace Corvid::Tool
