#include "tools/corvid/WarningLog.h"

namespace Corvid::Tool {

namespace {

/// What repeats of a warning have in common beside its kind.
std::string factOf(const mxf::Warning& warning, std::size_t number) {
    switch (warning.kind->scope) {
    case mxf::WarningScope::file:
        break;
    case mxf::WarningScope::set:
        return warning.set;
    case mxf::WarningScope::property:
        return warning.localTag ? std::to_string(*warning.localTag) : warning.property;
    case mxf::WarningScope::each:
        return std::to_string(number);
    }
    return {};
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
        entries_.push_back({warning});
    }
}

} // namespace Corvid::Tool
