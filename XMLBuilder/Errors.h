#pragma once

#include "XMLBuilder/CallerContract.h"

namespace Corvid::XMLBuilder {

/// Reports a check that failed: throws InvalidFormat with the message "condition: explanation".
/// @param condition  the text of what was to hold.
/// @param file       static storage; with `line` the place that the exception has.
[[noreturn]] void throwInvalidFormat(const char* condition, const char* explanation,
                                     const char* file, int line);

/// The same as InvalidLength.
[[noreturn]] void throwInvalidLength(const char* condition, const char* explanation,
                                     const char* file, int line);

} // namespace Corvid::XMLBuilder

/// The place of a throw in the parsers of values, as the last two arguments of an exception's
/// constructor: the name is the same for all of them, whichever file holds the parser.
#define CORVID_ELEMENT_VISITOR_HERE Corvid::XMLBuilder::CallerContract::File::valueParsers, __LINE__
