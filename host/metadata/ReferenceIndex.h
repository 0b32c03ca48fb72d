#pragma once

#include "host/metadata/MetadataSet.h"
#include "host/metadata/Targets.h"
#include "host/types/UuidMap.h"

#include <vector>

namespace Corvid::Metadata {

/// The sets of a partition by their InstanceUID.
class ReferenceIndex {
public:
    using Sets = Templates::vector<MetadataSet*>;

    /// Takes in the sets, which need not have an InstanceUID each, nor one of their own.
    /// @throws IOError  the system's random source gives nothing.
    explicit ReferenceIndex(const Sets& sets);

    Targets find(const Types::UUID& uuid) const;
    /// Whether two sets have the same InstanceUID.
    bool isAmbiguous() const noexcept { return identifiers_.size() != sets_.size(); }

private:
    Types::UuidNumbers identifiers_;
    /// Where in sets_ those of each identifier begin, and at the end where the last ones end.
    std::vector<std::size_t> begins_;
    Sets sets_; ///< by their identifiers' numbers, those with one InstanceUID in the partition's
                ///< order
};

} // namespace Corvid::Metadata
