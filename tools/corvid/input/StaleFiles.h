#pragma once

#include <string>

namespace Corvid::Tool {

class Messages;

/// Names files in the folder of a clip that may say of it what an edit makes untrue: lists of DCP
/// and IMF packages, checksums, indexes of other programs.
///
/// Those of packages are known by their root elements, others by their names. At most the front of
/// 1000 XML files is read; what can't be read is passed over.
/// @param isLonger  the edit makes the clip longer.
void noteStaleFiles(const std::string& clip, bool isLonger, Messages& messages);

} // namespace Corvid::Tool
