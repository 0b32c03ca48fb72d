#pragma once

#include "host/dictionary/Dictionary.h"

#include <unordered_map>
#include <vector>

namespace Corvid::Inspection {

/// Which definitions of a dictionary build on others: what the dictionary says the other way round.
class DefinitionUses {
public:
    using Sets = std::vector<const MetaMetadata::MetaMetadataSet*>; ///< in the dictionary's order

    /// @param dictionary  must outlive the object.
    explicit DefinitionUses(const MetaMetadata::Dictionary& dictionary);

    /// The sets that inherit from a set, not by way of another.
    const Sets& heirs(const MetaMetadata::MetaMetadataSet& set) const;
    /// How many sets inherit from a set, by way of others as well.
    std::size_t countDescendants(const MetaMetadata::MetaMetadataSet& set) const;
    /// The sets that list a property themselves.
    const Sets& setsWith(const MetaMetadata::MetaElement& property) const;

private:
    std::unordered_map<const MetaMetadata::MetaMetadataSet*, Sets> heirs_;
    std::unordered_map<const MetaMetadata::MetaMetadataSet*, std::size_t> descendants_;
    std::unordered_map<const MetaMetadata::MetaElement*, Sets> sets_;
};

} // namespace Corvid::Inspection
