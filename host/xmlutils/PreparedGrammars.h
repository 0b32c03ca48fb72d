#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <xercesc/util/XercesDefs.hpp>

XERCES_CPP_NAMESPACE_BEGIN
class XMLGrammarPoolImpl;
XERCES_CPP_NAMESPACE_END

namespace Corvid::XMLUtils {

// Compiled schemas as bytes, in the form of Xerces-C with a head that says what they are. The form
// is that of one machine and one version of Xerces-C, which does not check what it reads.

/// @param pool    not locked: Xerces-C can't read a locked one.
/// @param origin  a number for what the schemas were made of.
std::string writeGrammars(xercesc::XMLGrammarPoolImpl& pool, std::uint64_t origin);

/// Fills an empty pool.
/// @return false if the bytes are of another origin, of another version of Xerces-C or damaged;
/// then
///         the pool is of no use.
bool readGrammars(const unsigned char* bytes, std::size_t length, std::uint64_t origin,
                  xercesc::XMLGrammarPoolImpl& pool);

} // namespace Corvid::XMLUtils
