#pragma once

#include <unordered_set>

namespace Corvid::Metadata {
class MetadataSet;
}

namespace Corvid::XMLBuilder {

/// The sets that one pass has written already.
class VisitedRecord {
public:
    /// @return false where the set is in the record already.
    bool insert(const Metadata::MetadataSet& set) { return sets_.insert(&set).second; }
    bool holds(const Metadata::MetadataSet& set) const { return sets_.count(&set) != 0; }

private:
    std::unordered_set<const Metadata::MetadataSet*> sets_;
};

} // namespace Corvid::XMLBuilder
