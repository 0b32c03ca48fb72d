#pragma once

#include "XMLBuilder/reader/stream/StreamParser.h"
#include "XMLBuilder/reader/strict/Mistakes.h"

#include <functional>
#include <string>
#include <vector>

namespace Corvid::DataIO {
class DataSource;
}

namespace Corvid::Metadata {
class PartitionMetadata;
}

namespace Corvid::XMLBuilder {

class Strictness;
class Supplement;

/// What the caller does around a document that is read strictly.
struct StrictReading {
    /// Called when the root begins, with the instructions in front of it.
    /// @return what they say, or null. Borrowed until the document is read.
    std::function<Supplement*(const std::vector<Instruction>&)> begin;
    /// Called for each later instruction. Null for nothing.
    std::function<void(const Instruction&)> stray;
    /// Called when the document is read and the targets of links are looked for. Null for nothing.
    std::function<void(Strictness&)> end;
};

/// Reads a document of people into a partition, as a stream and without Xerces-C. Every set keeps
/// the identifier that is written.
///
/// @param mistakes  gets everything that is wrong. Where there is something, the partition is of no
///                  use.
/// @throws ParseError  the document is malformed.
void readStrictly(DataIO::DataSource& source, Metadata::PartitionMetadata& partition,
                  const StrictReading& reading, Mistakes& mistakes);

} // namespace Corvid::XMLBuilder
