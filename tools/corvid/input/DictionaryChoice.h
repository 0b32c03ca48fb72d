#pragma once

#include "host/dictionary/Dictionary.h"

#include <cstddef>
#include <string>
#include <vector>

namespace Corvid::Tool {

/// The most bytes of a dictionary. Nobody writes so many definitions; a device that never ends is
/// not read forever.
constexpr std::size_t greatestDictionary = std::size_t{64} * 1024 * 1024;

/// The definitions that a verb works with.
struct DictionaryChoice {
    std::vector<std::string> files; ///< with definitions beside the built-in ones
    bool registeredOnly = false;    ///< leaves out what is in use but not registered
};

/// All files that a verb reads.
/// @param files  beside the dictionaries.
std::vector<std::string> inputsOf(std::vector<std::string> files, const DictionaryChoice& choice);

/// The built-in dictionary, or one that extends it.
/// @param read  gets the text of all files; null where nobody asks.
/// @throws IOError            a file can't be read.
/// @throws InvalidDictionary  a file breaks a rule of the format.
Templates::SharedPtr<MetaMetadata::Dictionary> loadDictionary(const DictionaryChoice& choice,
                                                              std::string* read = nullptr);

} // namespace Corvid::Tool
