#include "tools/corvid/reports/CheckReport.h"

#include "tools/corvid/reports/WarningJson.h"
#include "tools/corvid/terminal/Printable.h"

#include <algorithm>
#include <fmt/core.h>

namespace Corvid::Tool {

namespace {

struct DescribedResult {
    CheckResult result;
    const char* name;
    const char* words;
};

constexpr DescribedResult results[] = {
    {CheckResult::lossless, "lossless", "lossless"},
    {CheckResult::cutOff, "cutOff", "lossless in what could be read"},
    {CheckResult::different, "different", "different"},
    {CheckResult::refused, "refused", "refused"},
    {CheckResult::unreadable, "unreadable", "unreadable"},
    {CheckResult::crashed, "crashed", "crashed"},
};

struct Style {
    const char* good = "";
    const char* bad = "";
    const char* end = "";

    explicit Style(bool colours) {
        if (colours) {
            good = "\033[32m";
            bad = "\033[31m";
            end = "\033[0m";
        }
    }
};

std::string counted(std::size_t count, const char* what) {
    return fmt::format("{} {}{}", count, what, count == 1 ? "" : "s");
}

std::string verdict(const CheckedFile& file, const Style& style) {
    const auto& differences = file.comparison.differences;
    const std::string cut = file.cutOffAt ? cutOffText(*file.cutOffAt) : "";
    if (!differences.empty()) {
        return fmt::format("{}DIFFERENT{}: {}", style.bad, style.end,
                           counted(differences.count(), "difference")) +
               (cut.empty() ? "" : "; " + cut);
    }
    return fmt::format("{}lossless{}{}", cut.empty() ? style.good : style.bad,
                       cut.empty() ? "" : " in what could be read", style.end) +
           (cut.empty() ? "" : ": " + cut);
}

std::string line(const Editing::Difference& difference) {
    std::string text = difference.set;
    const auto append = [&text](const char* between, const std::string& part) {
        if (!part.empty()) {
            text += (text.empty() ? "" : between) + part;
        }
    };
    append(" ", difference.instanceUID);
    append(": ", difference.property);
    append(": ", difference.detail);
    switch (difference.identifiers) {
    case Editing::DifferenceIdentifiers::both:
        break;
    case Editing::DifferenceIdentifiers::written:
        text += " (with the written identifiers only)";
        break;
    case Editing::DifferenceIdentifiers::fresh:
        text += " (with new identifiers only)";
        break;
    }
    return printable(text);
}

} // namespace

void CheckTally::add(CheckResult result) {
    ++files_;
    ++counts_[result];
}

std::size_t CheckTally::count(CheckResult result) const {
    const auto found = counts_.find(result);
    return found == counts_.end() ? 0 : found->second;
}

const char* nameOf(CheckResult result) { return results[static_cast<std::size_t>(result)].name; }

CheckResult resultOf(const Editing::Comparison& comparison, bool isCutOff) {
    return !comparison.differences.empty() ? CheckResult::different
           : isCutOff                      ? CheckResult::cutOff
                                           : CheckResult::lossless;
}

std::string toText(const CheckedFile& file, bool colours) {
    if (file.result >= CheckResult::refused) {
        return "";
    }
    const Style style(colours);
    const auto& differences = file.comparison.differences;
    std::string text = fmt::format("{}: {} ({}, {})\n", printable(file.file), verdict(file, style),
                                   counted(file.comparison.sets, "set"),
                                   file.comparison.properties == 1
                                       ? "1 property"
                                       : fmt::format("{} properties", file.comparison.properties));
    std::map<Editing::DifferenceKind, std::vector<const Editing::Difference*>> byKind;
    for (const Editing::Difference& difference : differences) {
        byKind[difference.kind].push_back(&difference);
    }
    for (const auto& [kind, members] : byKind) {
        const std::size_t count = differences.count(kind);
        text += fmt::format("  {}! {}{} ({}): {}\n", style.bad, describe(kind).name, style.end,
                            count, describe(kind).sentence);
        for (const Editing::Difference* difference : members) {
            text += "      " + line(*difference) + "\n";
        }
        if (members.size() != count) {
            text += fmt::format("      and {} more\n", count - members.size());
        }
    }
    return text;
}

std::string toText(const CheckTally& tally) {
    std::string text = counted(tally.files(), "file");
    const char* between = ": ";
    for (const auto& result : results) {
        if (const std::size_t count = tally.count(result.result); count != 0) {
            text += fmt::format("{}{} {}", between, count, result.words);
            between = ", ";
        }
    }
    return text + "\n";
}

} // namespace Corvid::Tool
