#pragma once

#include "Corvid/Export.h"

#include <string>

namespace Corvid::Exceptions {

/// What the exception that is being handled says, in UTF-8 on one line: one of Corvid's, a
/// std::exception, or that it is neither. XMLUtils::currentMessage() knows those of Xerces-C, too.
///
///     try { work(); } catch (...) { std::cerr << Exceptions::currentMessage() << '\n'; }
///
/// Only to be called in a catch block.
CORVID_EXPORT std::string currentMessage();

} // namespace Corvid::Exceptions
