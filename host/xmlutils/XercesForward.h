#pragma once

#include <type_traits>
#include <xercesc/util/XercesDefs.hpp>

static_assert(std::is_same_v<XMLCh, char16_t>, "Xerces-C is built with char16_t as XMLCh");

/// The names of Xerces-C that are in signatures, without its headers.
XERCES_CPP_NAMESPACE_BEGIN
class DOMDocument;
class DOMElement;
class DOMImplementation;
class DOMLSParser;
class DOMNode;
XERCES_CPP_NAMESPACE_END
