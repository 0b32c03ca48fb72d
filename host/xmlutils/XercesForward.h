#pragma once

#include <xercesc/util/XercesDefs.hpp>

/// The names of Xerces-C that stand in signatures, without its headers.
XERCES_CPP_NAMESPACE_BEGIN
class DOMDocument;
class DOMElement;
class DOMImplementation;
class DOMLSParser;
class DOMNode;
XERCES_CPP_NAMESPACE_END
