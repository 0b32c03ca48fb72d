#include "tools/corvid/reports/ChangeReport.h"

#include "host/base/Hex.h"
#include "host/types/FixedBytes.h"
#include "inspection/StructuralLabels.h"
#include "inspection/essence/Timecode.h"
#include "tools/corvid/reports/ValueText.h"

#include <nlohmann/json.hpp>

namespace Corvid::Tool {

namespace {

using Editing::ChangedDark;
using Editing::ChangedProperty;
using Editing::ChangedSet;
using Editing::Changes;
using Editing::EditWay;
using Json = nlohmann::ordered_json;

const char* nameOf(ChangedSet::Kind kind) {
    switch (kind) {
    case ChangedSet::Kind::changed:
        return "changed";
    case ChangedSet::Kind::added:
        return "added";
    case ChangedSet::Kind::removed:
        break;
    }
    return "removed";
}

const char* nameOf(const ChangedDark& dark) {
    return !dark.before ? "added" : dark.after ? "changed" : "removed";
}

const char* nameOf(EditWay way) {
    switch (way) {
    case EditWay::nothing:
        return "nothing";
    case EditWay::inPlace:
        return "in-place";
    case EditWay::replace:
        return "replace";
    case EditWay::newFile:
        break;
    }
    return "new-file";
}

std::string hexOf(const mxf::Bytes& bytes) {
    return Hex::encoded<std::string>(bytes.data(), bytes.size(), Hex::lower);
}

/// Whether a value is the start of timecode, a number of frames.
bool isStartTimecode(const ChangedProperty& property, const mxf::Bytes& value) {
    return property.label && value.size() == sizeof(Types::int64) &&
           property.label->withoutVersion() ==
               Inspection::Structural::startTimecode.label().withoutVersion();
}

/// @param count  of a set of timecode.
std::string text(const ChangedProperty& property, const std::optional<mxf::Bytes>& value,
                 const std::optional<Editing::TimecodeCount>& count,
                 const MetaMetadata::Dictionary& dictionary) {
    std::string text = valueText(property.label, mxf::viewOf(*value), dictionary);
    if (!count || count->framesPerSecond == 0 || !isStartTimecode(property, *value)) {
        return text;
    }
    const auto frames = Types::readBigEndian<Types::int64>(value->data());
    return Inspection::timecodeText({frames, count->framesPerSecond, count->dropFrame}) + " (" +
           text + ")";
}

std::string textBefore(const ChangedSet& set, const ChangedProperty& property,
                       const MetaMetadata::Dictionary& dictionary) {
    return text(property, property.before, set.countBefore, dictionary);
}

std::string textAfter(const ChangedSet& set, const ChangedProperty& property,
                      const MetaMetadata::Dictionary& dictionary) {
    return text(property, property.after, set.countAfter, dictionary);
}

std::uint64_t bytesOf(const mxf::Rewrite& rewrite) {
    std::uint64_t bytes = 0;
    for (const auto& range : rewrite.writes) {
        bytes += range.bytes.size();
    }
    return bytes;
}

std::uint64_t insertedBy(const mxf::Rewrite& rewrite) {
    return rewrite.newSize() - rewrite.oldSize;
}

std::string counted(std::uint64_t count, const char* what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string hexOf(const Editing::ContentHash& hash) {
    return Hex::encoded<std::string>(hash.data(), hash.size(), Hex::lower);
}

Json toJson(const ChangedSet& set, const ChangedProperty& property,
            const MetaMetadata::Dictionary& dictionary) {
    Json json{{"name", property.name}};
    if (property.label) {
        json["label"] = Platform::toUtf8(property.label->toString());
    }
    if (property.before) {
        json["before"] = textBefore(set, property, dictionary);
        json["bytesBefore"] = hexOf(*property.before);
    }
    if (property.after) {
        json["after"] = textAfter(set, property, dictionary);
        json["bytesAfter"] = hexOf(*property.after);
    }
    return json;
}

} // namespace

std::string toText(const Changes& changes, const MetaMetadata::Dictionary& dictionary) {
    std::string lines;
    for (const ChangedSet& set : changes.sets) {
        lines += std::string(nameOf(set.kind)) + " " + set.name;
        if (set.place.instance) {
            lines += " " + Platform::toUtf8(set.place.instance->toString());
        }
        lines += "\n";
        for (const ChangedProperty& property : set.properties) {
            lines += "  " + property.name + ": ";
            lines += property.before ? textBefore(set, property, dictionary) : "";
            lines += property.before && property.after ? " -> " : "";
            lines += !property.before ? "+ " : "";
            lines +=
                property.after ? textAfter(set, property, dictionary) : std::string(" (removed)");
            lines += "\n";
        }
    }
    for (const ChangedDark& dark : changes.dark) {
        lines += std::string(nameOf(dark)) + " KLV " + Platform::toUtf8(dark.key.toString()) + "\n";
    }
    return lines;
}

std::string toText(const Changes& changes, std::size_t otherInstanceUIDs,
                   const MetaMetadata::Dictionary& dictionary) {
    if (changes.empty() && otherInstanceUIDs == 0) {
        return "no difference\n";
    }
    return toText(changes, dictionary) +
           (otherInstanceUIDs == 0 ? ""
            : otherInstanceUIDs == 1
                ? "1 set has another InstanceUID\n"
                : std::to_string(otherInstanceUIDs) + " sets have other InstanceUIDs\n");
}

std::string toText(const Editing::EditPlan& plan, const MetaMetadata::Dictionary& dictionary) {
    return toText(plan.changes, dictionary) +
           (plan.closesHeader ? "in the header, which is closed:\n" : "") +
           toText(plan.closing, dictionary);
}

Json toJson(const Changes& changes, const MetaMetadata::Dictionary& dictionary) {
    Json sets = Json::array();
    for (const ChangedSet& set : changes.sets) {
        Json json{{"change", nameOf(set.kind)},
                  {"set", set.name},
                  {"key", Platform::toUtf8(set.place.key.toString())}};
        if (set.place.instance) {
            json["instanceUID"] = Platform::toUtf8(set.place.instance->toString());
        }
        json["properties"] = Json::array();
        for (const ChangedProperty& property : set.properties) {
            json["properties"].push_back(toJson(set, property, dictionary));
        }
        sets.push_back(std::move(json));
    }
    for (const ChangedDark& dark : changes.dark) {
        Json json{{"change", nameOf(dark)}, {"key", Platform::toUtf8(dark.key.toString())}};
        if (dark.before) {
            json["bytesBefore"] = hexOf(*dark.before);
        }
        if (dark.after) {
            json["bytesAfter"] = hexOf(*dark.after);
        }
        sets.push_back(std::move(json));
    }
    return sets;
}

std::string wayText(const EditReport& report) {
    const mxf::Rewrite& rewrite = report.plan.rewrite;
    if (report.plan.isEmpty()) {
        return "no change";
    }
    std::string line = report.way == EditWay::inPlace   ? "in place"
                       : report.way == EditWay::replace ? "by a longer file in its place"
                                                        : "as a new file";
    line +=
        ": " + counted(bytesOf(rewrite), "byte") + " at " + counted(rewrite.writes.size(), "place");
    if (const auto inserted = insertedBy(rewrite)) {
        line += ", " + counted(inserted, "byte") + " longer";
    }
    if (report.plan.closesHeader) {
        line += ", the header closed and complete";
    }
    const char* before = ", in ";
    for (const std::string& copy : report.copies) {
        line += before + copy;
        before = " and ";
    }
    return line;
}

std::string essenceText(const EditReport& report) {
    return report.essence ? "essence and index tables: BLAKE2b-256 " + hexOf(*report.essence) + "\n"
                          : std::string();
}

Json toJson(const EditReport& report) {
    const mxf::Rewrite& rewrite = report.plan.rewrite;
    Json json{{"file", report.file},
              {"changed", !report.plan.isEmpty()},
              {"way", report.plan.isEmpty() && report.way != EditWay::newFile ? "nothing"
                                                                              : nameOf(report.way)},
              {"sizeBefore", rewrite.oldSize},
              {"sizeAfter", rewrite.newSize()},
              {"bytesWritten", bytesOf(rewrite)},
              {"partitions", report.plan.copies},
              {"partitionsLeft", report.plan.left}};
    if (!report.headersAfter.empty()) {
        json["headerHashes"] = Json::array();
        for (std::size_t i = 0; i != report.headersAfter.size(); ++i) {
            json["headerHashes"].push_back({{"partition", report.plan.copies[i]},
                                            {"before", hexOf(report.headersBefore[i])},
                                            {"after", hexOf(report.headersAfter[i])}});
        }
    }
    if (report.essence) {
        json["essenceHash"] = hexOf(*report.essence);
    }
    json["sets"] = toJson(report.plan.changes, report.dictionary);
    if (report.plan.closesHeader) {
        json["setsOfClosedHeader"] = toJson(report.plan.closing, report.dictionary);
    }
    json["insertions"] = Json::array();
    for (const auto& insertion : rewrite.insertions) {
        json["insertions"].push_back({{"offset", insertion.offset}, {"size", insertion.size}});
    }
    json["writes"] = Json::array();
    for (const auto& range : rewrite.writes) {
        json["writes"].push_back({{"offset", range.offset}, {"size", range.bytes.size()}});
    }
    return json;
}

} // namespace Corvid::Tool
