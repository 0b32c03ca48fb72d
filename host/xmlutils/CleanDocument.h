#pragma once

#include "Corvid_XMLUtils/Export.h"
#include "host/xmlutils/XercesForward.h"

namespace Corvid::XMLUtils {

/// Removes every text node below `node` that holds nothing but white space (space, TAB, CR, LF), or
/// nothing at all. CDATA sections stay.
CORVID_XMLUTILS_EXPORT void cleanEmptyTextNodes(xercesc::DOMNode& node);

} // namespace Corvid::XMLUtils
