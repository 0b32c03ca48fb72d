#pragma once

#include <string>
#include <vector>

namespace Corvid::Testing {

using Texts = std::vector<std::string>;

/// What documents may have in one place, and what not.
struct ValueCase {
    std::string before; ///< what is around the text in a thing
    std::string after;
    Texts allowed;
    Texts refused;
};

/// Cases for the values of each type, their parts included, in the properties of ThingsDictionary.
std::vector<ValueCase> valueCases();

/// Some bytes as identifiers are written.
std::string dotted(int bytes, const char* one = "0a");

} // namespace Corvid::Testing
