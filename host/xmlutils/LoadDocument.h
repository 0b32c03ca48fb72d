#pragma once

#include "Corvid_XMLUtils/Export.h"
#include "host/base/Text.h"
#include "host/xmlutils/Limits.h"
#include "host/xmlutils/XercesForward.h"

#include <cstddef>

namespace Corvid::XMLUtils {

/// Parses a document from memory.
///
/// Namespaces are on. Nothing is validated and nothing but the bytes is read: a document type is
/// refused outright, with it every entity of its own, and so are elements nested more than
/// maximumElementDepth deep, more than maximumOpenAttributes or maximumNames, and names and
/// namespaces too many of which share a bucket of Xerces-C's hash tables. UTF-16 is recognised by
/// its first bytes, with or without byte order mark, and then holds whatever the XML declaration
/// says.
///
/// @param bytes   borrowed for the call. May be null when `length` is 0, which is an empty
/// document.
/// @param length  in bytes.
/// @param parser  is configured by the call; its handlers are put back.
/// @return the document; belongs to `parser`. Never null.
/// @throws xercesc::SAXParseException  the bytes are no XML document that may be loaded; the
///                                     message starts with "line L, column C: ".
/// @throws InvalidArgument             `bytes` is null and `length` is not 0, or the parser is none
///                                     of an implementation that is based on Xerces-C.
CORVID_XMLUTILS_EXPORT xercesc::DOMDocument* loadDocumentFromBuffer(const unsigned char* bytes,
                                                                    std::size_t length,
                                                                    xercesc::DOMLSParser& parser);

/// The same without the texts that cleanEmptyTextNodes() would remove, which never get into the
/// document. Comments do, whatever the parser's settings are.
CORVID_XMLUTILS_EXPORT xercesc::DOMDocument* loadCleanDocumentFromBuffer(
    const unsigned char* bytes, std::size_t length, xercesc::DOMLSParser& parser);

/// Parses a document from a file, which is read piece by piece.
///
/// @param path  zero-terminated UTF-16; never read as a URI.
/// @throws IOError  the path is null, does not exist, is a directory or can't be read; otherwise as
///                  loadDocumentFromBuffer.
CORVID_XMLUTILS_EXPORT xercesc::DOMDocument* loadDocumentFromFile(const Utf16Unit* path,
                                                                  xercesc::DOMLSParser& parser);

} // namespace Corvid::XMLUtils
