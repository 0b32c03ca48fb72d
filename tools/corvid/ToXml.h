#pragma once

#include "host/xmlutils/EncodingType.h"
#include "tools/corvid/batch/BatchOptions.h"
#include "tools/corvid/input/Clip.h"
#include "tools/corvid/xml/DocumentValidator.h"

namespace Corvid::Tool {

class Messages;

/// The options of `corvid to-xml`.
struct ToXmlOptions {
    BatchOptions batch;       ///< the files
    ClipOptions clip;         ///< how each of them is read; its path does not matter
    std::string output = "-"; ///< "-" is standard output
    bool force = false;       ///< replace an MXF file, too
    XMLUtils::EncodingType encoding = XMLUtils::EncodingType::utf8;
    bool referencesAsValues = false;
    bool structuralOnly = false; ///< without sets that are no structural metadata
    std::string start;           ///< InstanceUID of the set to begin with; empty for the Preface
    bool compact = false;
    DocumentValidator validate = nullptr; ///< called before anything is written; null for none
    bool replaceInvalid = false;          ///< U+FFFD in the place of what XML can't hold
    bool warningsAsErrors = false;
};

/// Writes the header metadata of an MXF file as XML.
///
/// Does without Xerces-C; see XmlModule.h.
/// @throws UsageError, IOError, BaseException  as guard() takes them. A file that was there is as
/// it
///     was, and nothing has gone to standard output where the data is refused.
void toXml(const ToXmlOptions& options, Messages& messages);

} // namespace Corvid::Tool
