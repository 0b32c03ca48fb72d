#pragma once

#include "tools/corvid/output/Output.h"

#include <vector>

namespace Corvid::Tool {

/// Which MXF files a result may take the place of. Other files it always may.
enum class MayReplace : unsigned char {
    noMxfFile,
    headerPartition, ///< a file with nothing but a header partition and its metadata
    everything,
};

/// Opens what a verb writes, before anything is converted.
/// @param path    as for Output::open().
/// @param inputs  as for protectInputs().
/// @throws UsageError   as protectInputs(), or an MXF file is there that may not be replaced: what
///                      makes up a clip would be lost in silence.
/// @throws OutputError  it can't be written.
std::unique_ptr<Output> openOutput(const std::string& path, const std::vector<std::string>& inputs,
                                   MayReplace mayReplace);

/// For verbs that print, before they read.
/// @param inputs  paths of all files that the verb reads, dictionaries among them; "-" is standard
///                input.
/// @throws UsageError  standard output goes to one of them, or standard error, of which nothing can
///                     be said then: what is added to a clip, or written into it, damages it.
void protectInputs(const std::vector<std::string>& inputs);

/// @throws UsageError  an MXF file is at the path, or one that can't be read, and it may not be
///                     replaced.
void refuseToDestroy(const std::string& path, MayReplace mayReplace);

} // namespace Corvid::Tool
