#pragma once

#include "host/base/Text.h"
#include "host/xmlutils/XercesForward.h"

#include <vector>
#include <xercesc/util/XercesDefs.hpp>

namespace Corvid::XMLUtils {

/// Tells people where in a document something stands: the element names from the child of the root
/// downwards, joined by "/", with the identifiers of those that carry one. A long path keeps its
/// first and its last three names.
///
/// @param open           the elements around the place, outermost first; may be empty.
/// @param attributeName  the attribute that the place is in, or null.
Utf16Text elementPath(const std::vector<const xercesc::DOMElement*>& open,
                      const XMLCh* attributeName);

} // namespace Corvid::XMLUtils
