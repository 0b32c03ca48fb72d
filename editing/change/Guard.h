#pragma once

#include "editing/change/Changes.h"

#include <array>
#include <cstdint>

namespace Corvid::Editing {

/// A property that wires a file together or describes its essence.
struct TechnicalProperty {
    const char* name;    ///< in its standard
    std::uint64_t label; ///< its last 8 bytes
};

inline constexpr std::array technicalProperties{
#define CORVID_TECHNICAL(name, label) TechnicalProperty{name, label},
#include "editing/change/TechnicalProperties.def"
};

/// A technical property that changes, or that a set has which is added or removed.
struct TechnicalChange {
    const ChangedSet* set; ///< of the changes
    const ChangedProperty* property;
};

/// What changes that should not without need. Those of the changes, which are borrowed.
std::vector<TechnicalChange> technicalChanges(const Changes& changes);

/// Refuses changes of technical properties.
/// @throws InvalidFormat  there are some; the message names each, the first ones with their sets.
void refuseTechnical(const Changes& changes);

} // namespace Corvid::Editing
