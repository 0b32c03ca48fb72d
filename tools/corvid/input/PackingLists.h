#pragma once

#include <string>
#include <vector>

namespace Corvid::Tool {

/// The packing lists of a DCP (SMPTE ST 429-8) or IMF package (SMPTE ST 2067-2) in the folder of a
/// clip, by their file names in order: they have hashes and sizes of the files of the package.
///
/// At most the front of 1000 XML files is read; what can't be read is passed over.
std::vector<std::string> packingListsBeside(const std::string& clip);

} // namespace Corvid::Tool
