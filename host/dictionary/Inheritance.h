#pragma once

#include "host/dictionary/Definitions.h"

namespace Corvid::MetaMetadata {

/// How many ancestors a set may have.
constexpr std::size_t deepestInheritance = 64;

/// Checks what only the sets together show: that no set inherits from itself, that none has a
/// property twice, that each concrete one has an InstanceUID, without which it could not be
/// referred to, and that they have no more properties than DictionaryLimits.h allows. Time is
/// linear in the number of rows.
/// @throws InvalidDictionary  one of these does not hold.
void checkInheritance(const Definitions& definitions);

} // namespace Corvid::MetaMetadata
