#pragma once

#include "editing/DocumentMetadata.h"
#include "tools/corvid/input/DictionaryChoice.h"

namespace Corvid::Tool {

class Messages;

/// Reads a document as the library does. A verb that can do so is given the function: that needs
/// Xerces-C, and the verb may not.
using LenientReader = Editing::DocumentMetadata (*)(
    DataIO::DataSource& source, const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary,
    Editing::DocumentIdentifiers identifiers);

/// The options of `corvid from-xml`.
struct FromXmlOptions {
    std::string path; ///< "-" is standard input
    DictionaryChoice dictionaries;
    Editing::DocumentIdentifiers identifiers = Editing::DocumentIdentifiers::written;
    /// Reads as the library does, which takes what it finds; null to read strictly.
    LenientReader lenient = nullptr;
    std::uint32_t kagSize = 512; ///< bytes; 1 for no alignment
    std::string output;          ///< "-" is standard output
    bool force = false;          ///< replace an MXF file with more than a header partition, too
    bool warningsAsErrors = false;
};

/// The greatest KAG size that a file may have, in bytes (SMPTE ST 377-1).
constexpr std::uint32_t greatestKagSize = 1U << 20;

/// Writes the header metadata of a document as an MXF header partition that is closed and complete.
///
/// @throws UsageError, IOError, BaseException  as guard() takes them. A file that was there is as
///     it was, and nothing has gone to standard output where the data is refused.
void fromXml(const FromXmlOptions& options, Messages& messages);

} // namespace Corvid::Tool
