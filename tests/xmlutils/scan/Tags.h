#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>
#include <xercesc/util/XercesDefs.hpp>

/// The start tags of documents, seen with and without a parser.
namespace Corvid::XMLUtils::Testing {

/// One line for each start tag: the name, then each attribute, with the value of a declaration.
using Tags = std::vector<std::string>;

/// What the scanner sees of a document that comes in blocks of so many bytes.
/// @param encoding  null to recognise it.
Tags scannedTags(std::string_view document, std::size_t blockSize, const XMLCh* encoding = nullptr);

/// What Xerces-C reports up to its first error.
Tags parsedTags(std::string_view document, const XMLCh* encoding = nullptr);

} // namespace Corvid::XMLUtils::Testing
