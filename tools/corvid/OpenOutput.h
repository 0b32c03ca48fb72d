#pragma once

#include "tools/corvid/Output.h"

namespace Corvid::Tool {

/// Which MXF files a result may take the place of. Other files it always may.
enum class MayReplace : unsigned char {
    noMxfFile,
    headerPartition, ///< a file with nothing but a header partition and its metadata
    everything,
};

/// Opens what a verb writes, before anything is converted.
/// @param path   as for Output::open().
/// @param input  path of the file that the verb reads; "-" is standard input, empty for none.
/// @throws UsageError   the file is the input itself, or an MXF file that may not be replaced: what
///                      makes up a clip would be gone without a word.
/// @throws OutputError  it can't be written.
std::unique_ptr<Output> openOutput(const std::string& path, const std::string& input,
                                   MayReplace mayReplace);

/// @throws UsageError  an MXF file is at the path, or one that can't be read, and it may not be
///                     replaced.
void refuseToDestroy(const std::string& path, MayReplace mayReplace);

} // namespace Corvid::Tool
