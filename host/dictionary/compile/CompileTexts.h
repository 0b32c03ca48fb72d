#pragma once

#include "host/dictionary/DictionaryText.h"

#include <functional>
#include <iosfwd>
#include <vector>

namespace Corvid::MetaMetadata {

/// The body of a program that makes one source of texts: PROGRAM OUTPUT TEXT... Says on standard
/// error what is wrong.
/// @param write  gets the texts in the order of their names; may throw what BaseException is.
/// @return the exit status.
int compileTexts(int argc, char** argv,
                 const std::function<void(std::vector<DictionaryText>, std::ostream&)>& write);

} // namespace Corvid::MetaMetadata
