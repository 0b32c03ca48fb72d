#pragma once

#include "XMLBuilder/format/EmptyParts.h"
#include "host/types/Identifiers.h"

#include <initializer_list>
#include <string_view>

namespace Corvid::XMLBuilder {

struct DocumentNode;
class Mistakes;

/// Whether the text or the parts of a value have the form of its type, as documents of people must:
/// whole numbers within their range in XML Schema's lexical form, 0 and 1 as booleans, pairs of
/// hexadecimal digits, identifiers of the right length, each part of a compound value once. White
/// space around all but text is passed over.
///
/// A time that no calendar has is a doubt.
/// @param node   an element, or an attribute.
/// @param empty  whether bytes or text may have no length.
/// @return false after a mistake has been added.
bool hasRightForm(Types::Identifiers::Identifier type, const DocumentNode& node, EmptyParts empty,
                  Mistakes& mistakes);

/// Adds a mistake for each attribute but those of the given local names in a namespace.
/// Declarations and attributes of the namespaces of XML itself are nobody's business.
/// @param uri  null for any.
void checkAttributes(const DocumentNode& element, const char16_t* uri,
                     std::initializer_list<const char16_t*> locals, Mistakes& mistakes);
/// Adds a mistake for each element in one that holds text only.
bool holdsTextOnly(const DocumentNode& node, Mistakes& mistakes);
/// Adds a mistake for text in an element that holds elements only.
void refuseText(const DocumentNode& node, Mistakes& mistakes);

} // namespace Corvid::XMLBuilder
