#pragma once

#include "XMLBuilder/writer/DocumentPlan.h"
#include "host/xmlutils/Layout.h"

#include <optional>
#include <string_view>

namespace Corvid::DataIO {
class DataSink;
}

namespace Corvid::mxf {
struct SetOffsets;
}

namespace Corvid::XMLBuilder {

/// What JSON of header metadata says beside the metadata.
struct JsonContent {
    XMLUtils::Layout layout = XMLUtils::Layout::indented;
    std::string_view file;                ///< its name in UTF-8; empty for none
    std::optional<std::size_t> partition; ///< that the metadata is from, from 0

    /// Where the sets are in their file. If they are named, each set has its offset and length and,
    /// as "raw", the bytes of its properties and then of "other": a text with ";" between them, each
    /// its tag, its offset in the set, the length of its value and the value. The definitions of all
    /// properties are at the end. Of a partition as it was read. Borrowed.
    const mxf::SetOffsets* offsets = nullptr;
    /// How many bytes are written of what is written as bytes; longer ones are cut and have their
    /// count.
    std::size_t mostBytes = static_cast<std::size_t>(-1);
};

/// What the name and number of the form are, which every document begins with.
inline constexpr std::string_view jsonFormat = "corvid-metadata";
inline constexpr int jsonVersion = 1;

/// Writes the metadata of a plan as JSON: the sets that a document in XML holds, in its order, with
/// the same values (docs/to-json.md). No more than a set is in memory at a time.
/// @throws LimitExceeded  offsets are wanted, and a value has more than 65535 bytes.
void writeJson(const DocumentPlan& plan, const JsonContent& content, DataIO::DataSink& sink);

} // namespace Corvid::XMLBuilder
