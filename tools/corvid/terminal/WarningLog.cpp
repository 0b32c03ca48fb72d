#include "tools/corvid/terminal/WarningLog.h"

#include "host/base/Shortened.h"

namespace Corvid::Tool {

namespace {

/// What repeats of a warning have in common beside its kind.
std::string factOf(const mxf::Warning& warning, std::size_t number) {
    switch (warning.kind->scope) {
    case mxf::WarningScope::file:
        break;
    case mxf::WarningScope::set:
        return shortened(warning.set, WarningLog::longestName);
    case mxf::WarningScope::property:
        return warning.localTag ? std::to_string(*warning.localTag)
                                : shortened(warning.property, WarningLog::longestName);
    case mxf::WarningScope::each:
        return std::to_string(number);
    }
    return {};
}

mxf::Warning shortenedParts(mxf::Warning warning) {
    warning.text = shortened(warning.text, WarningLog::longestText);
    warning.set = shortened(warning.set, WarningLog::longestName);
    warning.property = shortened(warning.property, WarningLog::longestName);
    return warning;
}

} // namespace

void WarningLog::add(const mxf::Warning& warning) {
    Kind& kind = kinds_[warning.kind->code];
    const std::string fact = factOf(warning, kind.facts.size());
    if (const auto known = kind.facts.find(fact); known != kind.facts.end()) {
        ++entries_[known->second].count;
    } else if (kind.facts.size() == mostOfAKind) {
        ++entries_[kind.last].count;
    } else {
        kind.last = entries_.size();
        kind.facts.emplace(fact, kind.last);
        entries_.push_back({shortenedParts(warning)});
    }
}

} // namespace Corvid::Tool
