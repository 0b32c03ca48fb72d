#pragma once

#include "Corvid_Inspection/Export.h"
#include "host/types/IdentifierTypes.h"

#include <string>

namespace Corvid::Inspection {

/// What people call a coding, colour or container in a few words; empty where nobody is known to.
CORVID_INSPECTION_EXPORT std::string shortName(const Types::UniversalLabel& label);

/// The short name, else the name in the registers, else that of the narrowest part of the register
/// that the label belongs to, else its digits.
CORVID_INSPECTION_EXPORT std::string labelName(const Types::UniversalLabel& label);

} // namespace Corvid::Inspection
