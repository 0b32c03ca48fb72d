#pragma once

#include "tools/corvid/input/DictionaryChoice.h"

#include <string>

namespace Corvid::Tool {

/// The options of `corvid dictionary`.
struct DictionaryOptions {
    std::string wanted; ///< label, local tag or name
    DictionaryChoice dictionaries;
    bool json = false;
    bool colours = false; ///< no part of JSON
};

/// Prints on standard output what a label, a local tag or a name means.
/// @throws InvalidArgument  nothing; suggests what is near.
/// @throws IOError, InvalidDictionary, OutputError  as guard() takes them.
void dictionary(const DictionaryOptions& options);

} // namespace Corvid::Tool
