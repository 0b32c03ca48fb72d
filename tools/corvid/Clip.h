#pragma once

#include "host/mxf/File.h"

#include <string>
#include <vector>

namespace Corvid::Tool {

/// The most bytes of a dictionary. Nobody writes so many definitions; a device that never ends is
/// not read forever.
constexpr std::size_t greatestDictionary = std::size_t{64} * 1024 * 1024;

/// What every verb that reads an MXF file can be told of it.
struct ClipOptions {
    std::string path;                      ///< "-" is standard input
    std::string partition = "auto";        ///< auto, header, footer, or a number from 0
    std::vector<std::string> dictionaries; ///< files with definitions beside the built-in ones
};

/// The built-in dictionary, or one that extends it.
/// @throws IOError            a file can't be read.
/// @throws InvalidDictionary  a file breaks a rule of the format.
Templates::SharedPtr<MetaMetadata::Dictionary> loadDictionary(
    const std::vector<std::string>& paths);

/// True for what `ClipOptions::partition` may be.
bool isPartitionChoice(const std::string& text);

/// Reads the metadata of the partition that the options name.
/// @throws InvalidFormat  there is none; tells which partitions have some.
mxf::HeaderMetadata readMetadata(mxf::File& file, const ClipOptions& options);

/// "partition 3 (footer, closed and complete)"
std::string describe(std::size_t number, const mxf::Partition& partition);

} // namespace Corvid::Tool
