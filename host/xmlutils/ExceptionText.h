#pragma once

#include "Corvid_XMLUtils/Export.h"

#include <string>

namespace Corvid::XMLUtils {

/// What the exception that is being handled says, in UTF-8: one of Xerces-C or XQilla, else as
/// Exceptions::currentMessage(). Only to be called in a catch block.
CORVID_XMLUTILS_EXPORT std::string currentMessage();

} // namespace Corvid::XMLUtils
