#pragma once

#include "host/dictionary/Dictionary.h"
#include "host/mxf/rewrite/HeaderLayout.h"
#include "host/types/UuidMap.h"

#include <optional>
#include <vector>

namespace Corvid::Editing {

/// Whether a property of a label refers strongly to sets: to one, or to many.
bool isStrongReference(const Types::UniversalLabel& label,
                       const MetaMetadata::Dictionary& dictionary);

/// The InstanceUIDs that a strong reference or a collection of them names.
std::vector<Types::UUID> targetsOf(const Types::UniversalLabel& label, Types::ByteView value,
                                   const MetaMetadata::Dictionary& dictionary);

/// Which set refers strongly to which; of several, the first in the copy.
class Owners {
public:
    Owners(const mxf::HeaderLayout& layout, const MetaMetadata::Dictionary& dictionary);

    /// Nothing where no set refers to it.
    std::optional<Types::UUID> of(const Types::UUID& instance) const;

private:
    Types::UuidMap<Types::UUID> owners_;
};

} // namespace Corvid::Editing
