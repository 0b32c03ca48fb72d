#pragma once

#include "tools/corvid/DictionaryChoice.h"
#include "tools/corvid/DocumentMetadata.h"

namespace Corvid::Tool {

/// What `corvid from-xml` can be told.
struct FromXmlOptions {
    std::string path; ///< "-" is standard input
    DictionaryChoice dictionaries;
    DocumentIdentifiers identifiers = DocumentIdentifiers::written;
    bool lenient = false;        ///< read as the library does, which takes what it finds
    std::uint32_t kagSize = 512; ///< bytes; 1 for no alignment
    std::string output;          ///< "-" is standard output
    bool force = false;          ///< replace an MXF file with more than a header partition, too
    bool warningsAsErrors = false;
};

/// The greatest KAG size that a file may have, in bytes (SMPTE ST 377-1).
constexpr std::uint32_t greatestKagSize = 1U << 20;

/// Writes the header metadata of a document as an MXF header partition that is closed and complete.
///
/// Needs Xerces-C, so it stands in the module and not in the command itself; see XmlModule.h.
/// @throws UsageError, IOError, BaseException  as guard() takes them. A file that was there is as
///     it was, and nothing has gone to standard output where the data is refused.
void fromXml(const FromXmlOptions& options, Messages& messages);

} // namespace Corvid::Tool
