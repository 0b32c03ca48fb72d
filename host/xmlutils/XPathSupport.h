#pragma once

#include "host/xmlutils/XercesForward.h"

namespace Corvid::XMLUtils {

/// Starts XQilla, if it is part of the build, and gives the implementation that the reader's
/// documents come from. To be called once, with Xerces-C running.
xercesc::DOMImplementation* startXPathSupport();

} // namespace Corvid::XMLUtils
