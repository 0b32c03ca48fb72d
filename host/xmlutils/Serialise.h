#pragma once

#include "Corvid_XMLUtils/Export.h"
#include "host/base/Text.h"
#include "host/xmlutils/EncodingType.h"
#include "host/xmlutils/Layout.h"
#include "host/xmlutils/XercesForward.h"

#include <string_view>

namespace Corvid::DataIO {
class DataSink;
}

namespace Corvid::XMLUtils {

class InvalidCharacters;

/// Writes a document as XML 1.0, with an XML declaration that names the encoding, to a sink, piece
/// by piece: the text is never in memory as a whole.
///
/// What is read back holds the same elements, attributes and text, to the last blank: indented
/// layout adds no white space to an element that holds text of its own, or inside one. Namespaces
/// that elements or attributes use and nothing declares are declared where they are first used; an
/// attribute whose prefix is taken by another namespace gets a prefix of its own ("ns1", ...).
/// CDATA sections are written as text.
///
/// @param node     a document or an element; the element is written as the root of a document.
/// @param inFront  goes between the XML declaration and the rest, unchanged; ASCII.
/// @param invalid  decides about characters that XML cannot hold. Borrowed.
/// @param sink     receives the encoded bytes. Borrowed.
/// @throws InvalidArgument  `node` is null or of another type, or the encoding is unknown.
/// @throws InvalidFormat    what XML cannot hold: an entity reference, a document type, a comment
///                          with "--" or "-" at its end, a processing instruction with "?>" or
///                          whose target is xml or no name, a name with an undeclared prefix, a
///                          document without root, or a character that `invalid` refuses.
///                          Part of the document may have gone to the sink.
CORVID_XMLUTILS_EXPORT void serialise(const xercesc::DOMNode* node, EncodingType encoding,
                                      Layout layout, InvalidCharacters& invalid,
                                      DataIO::DataSink& sink, std::string_view inFront = "");

/// Writes a document as UTF-16 text. Its XML declaration names `encoding`, for those who store the
/// text in that encoding; loadDocumentFromBuffer reads the text's own bytes for every encoding.
///
/// @param node  as for serialise(); characters that XML cannot hold are refused.
/// @param out   replaced; unchanged when an exception is thrown.
CORVID_XMLUTILS_EXPORT void domToBuffer(const xercesc::DOMNode* node, Utf16Text& out,
                                        EncodingType encoding);

/// The same in a layout of choice; the other writes the indented one.
CORVID_XMLUTILS_EXPORT void domToBuffer(const xercesc::DOMNode* node, Utf16Text& out,
                                        EncodingType encoding, Layout layout);

} // namespace Corvid::XMLUtils
