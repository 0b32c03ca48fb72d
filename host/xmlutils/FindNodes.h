#pragma once

#include "Corvid_XMLUtils/Export.h"
#include "host/base/Templates.h"
#include "host/xmlutils/XercesForward.h"

#include <string>

namespace Corvid::XMLUtils {

/// Finds nodes with an XPath 2.0 expression, evaluated by XQilla.
///
/// The document must come from Initializer::domImplementation(): one that is loaded with its
/// parser, or that XMLBuilder makes after a call of it.
///
/// @param from   where the expression begins; the prefixes in it are those that are declared at a
///               document's root, or around an element. Borrowed.
/// @param xpath  UTF-8, for instance "//s377m:TimelineTrack[s377m:TrackID = 2]".
/// @return the nodes in document order; they belong to the document.
/// @throws InvalidFormat    the expression is none, or gives other things than nodes.
/// @throws InvalidArgument  the document has no XPath, as in a build without XQilla.
CORVID_XMLUTILS_EXPORT Templates::vector<xercesc::DOMNode*> findNodes(xercesc::DOMNode& from,
                                                                      const std::string& xpath);

} // namespace Corvid::XMLUtils
