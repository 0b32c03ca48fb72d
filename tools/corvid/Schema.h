#pragma once

#include "tools/corvid/input/DictionaryChoice.h"

#include <string>

namespace Corvid::Tool {

class Messages;

/// The options of `corvid schema`.
struct SchemaOptions {
    DictionaryChoice dictionaries;
    std::string folder = "."; ///< where the schemas go; made where it is missing
    bool force = false;       ///< replace MXF files, too
};

/// Writes the XML Schema documents of the documents that `to-xml` writes, one file per namespace.
///
/// Needs Xerces-C; see XmlModule.h.
/// @throws IOError, BaseException  as guard() takes them.
void schema(const SchemaOptions& options, Messages& messages);

} // namespace Corvid::Tool
