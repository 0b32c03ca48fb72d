#pragma once

#include "host/mxf/File.h"
#include "tools/corvid/input/DictionaryChoice.h"

#include <string>

namespace Corvid::Tool {

/// What every verb that reads an MXF file can be told of it.
struct ClipOptions {
    std::string path;               ///< "-" is standard input
    std::string partition = "auto"; ///< auto, header, footer, or a number from 0
    DictionaryChoice dictionaries;
};

/// True for what `ClipOptions::partition` may be.
bool isPartitionChoice(const std::string& text);

/// Reads the metadata of the partition that the options name.
/// @param warnings  is told where an edit of the file was interrupted. Borrowed.
/// @throws InvalidFormat  there is none; names the partitions that have some.
mxf::HeaderMetadata readMetadata(mxf::File& file, const ClipOptions& options,
                                 mxf::WarningSink& warnings);

/// "partition 3 (footer, closed and complete)"
std::string describe(std::size_t number, const mxf::Partition& partition);

} // namespace Corvid::Tool
