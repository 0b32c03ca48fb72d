#pragma once

#include "Corvid_Inspection/Export.h"
#include "host/types/IdentifierTypes.h"

#include <string>
#include <vector>

namespace Corvid::Inspection {

/// What the SMPTE registers, or those who use it, call a label, the key of a set or pack, or the
/// label of a property, in words; empty where nobody is known to. The version byte takes no part.
CORVID_INSPECTION_EXPORT std::string registeredName(const Types::UniversalLabel& label);

/// The same for a dotted label; empty for any other text.
CORVID_INSPECTION_EXPORT std::string registeredName(const std::string& text);

/// Where a label is in the register of labels, or would if it were registered: from the widest
/// part to the narrowest. Empty for what is no label by its first bytes.
CORVID_INSPECTION_EXPORT std::vector<std::string> branchesOf(const Types::UniversalLabel& label);

} // namespace Corvid::Inspection
