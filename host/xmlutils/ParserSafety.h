#pragma once

#include "host/xmlutils/XercesForward.h"

#include <string>

XERCES_CPP_NAMESPACE_BEGIN
class InputSource;
class XMLScanner;
XERCES_CPP_NAMESPACE_END

namespace Corvid::XMLUtils {

/// Whether texts of white space alone get into a document; cleanEmptyTextNodes() says which.
enum class EmptyText : unsigned char { kept, leftOut };

/// Parses one document with everything off that reads or makes more than the document's own bytes.
/// @throws xercesc::SAXParseException  the document is not well-formed or exceeds a limit.
/// @throws InvalidArgument             the parser is not based on Xerces-C's.
xercesc::DOMDocument* parseSafely(const xercesc::InputSource& input, xercesc::DOMLSParser& parser,
                                  EmptyText emptyText = EmptyText::kept);

/// Throws a xercesc::SAXParseException whose message is "line L, column C: " and `text`.
[[noreturn]] void throwParseError(unsigned long long line, unsigned long long column,
                                  const char* text);

/// The same for the place that a scanner has reached.
[[noreturn]] void throwParseError(const xercesc::XMLScanner& scanner, const std::string& text);

} // namespace Corvid::XMLUtils
