#pragma once

#include "tools/corvid/input/DictionaryChoice.h"

#include <string>
#include <vector>

namespace Corvid::Tool {

class Messages;

/// The options of `corvid schema`.
struct SchemaOptions {
    DictionaryChoice dictionaries;
    std::string folder = "."; ///< where the schemas go; made where it is missing
    bool force = false;       ///< replace MXF files, too
    bool json = false;        ///< JSON Schema instead of XML Schema
};

/// Writes the XML Schema documents of the documents that `to-xml` writes, one file per namespace.
///
/// Needs Xerces-C; see XmlModule.h.
/// @throws IOError, BaseException  as guard() takes them.
void schema(const SchemaOptions& options, Messages& messages);

/// Writes the JSON Schema of what `to-json` writes, one file.
/// @throws IOError, BaseException  as guard() takes them.
void jsonSchema(const SchemaOptions& options, Messages& messages);

/// A schema with the name that its file gets.
struct SchemaFile {
    std::string name;
    std::string text;
};

/// Writes schemas into the folder that the options name: all or none.
/// @throws OutputError  one can't be written.
void writeSchemas(const SchemaOptions& options, const std::vector<SchemaFile>& schemas);

} // namespace Corvid::Tool
