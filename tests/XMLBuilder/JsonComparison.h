#pragma once

#include <string>
#include <xercesc/dom/DOM.hpp>

namespace Corvid::Testing {

/// Goes through a document and JSON of the same metadata side by side: the same sets in the same
/// order, with the same properties and values.
/// @param document  the root's document.
/// @param values    whether references are values.
/// @return the first difference, with the way to it; empty where there is none.
std::string differenceOf(const xercesc::DOMNode& document, const std::string& json, bool values);

} // namespace Corvid::Testing
