#pragma once

#include <string>
#include <string_view>

namespace Corvid::XMLUtils {

/// Whether an attribute of that name declares a namespace: `xmlns`, or with that prefix.
bool declaresNamespace(std::u16string_view attribute);

/// The value of an attribute as a parser has it (XML 1.0, 3.3.3): white space is a space,
/// references to characters and predefined entities are resolved. What is no such reference stays.
/// @param written  between the quotes.
std::u16string attributeValue(std::u16string_view written);

} // namespace Corvid::XMLUtils
