#pragma once

#include "tools/corvid/batch/BatchOptions.h"
#include "tools/corvid/input/Clip.h"
#include "tools/corvid/reports/SummaryReport.h"

namespace Corvid::Tool {

class Messages;

/// The options of `corvid info`.
struct InfoOptions {
    BatchOptions batch; ///< the files
    ClipOptions clip;   ///< how each of them is read; its path does not matter
    SummaryText text;
    bool json = false;
    bool warningsAsErrors = false; ///< after all is printed
};

/// Prints on standard output what MXF files hold. A file that can't be read does not keep those
/// after it from being read.
/// @throws IOError, BaseException  as guard() takes them.
void info(const InfoOptions& options, Messages& messages);

} // namespace Corvid::Tool
