#pragma once

namespace Corvid::DataIO {
class DataSink;
}

namespace Corvid::MetaMetadata {
class Dictionary;
}

namespace Corvid::Tool {

/// Writes the JSON Schema (2020-12) of what `to-json` writes with a dictionary.
void writeJsonSchema(const MetaMetadata::Dictionary& dictionary, DataIO::DataSink& sink);

} // namespace Corvid::Tool
