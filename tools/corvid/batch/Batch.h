#pragma once

#include "tools/corvid/batch/BatchOptions.h"
#include "tools/corvid/batch/FileTask.h"

namespace Corvid::Tool {

/// Does the work of a verb for each of many files, in other processes, and prints the results in
/// the order of the files. One that goes wrong does not keep the others from being done, unless
/// nothing more can be written. SIGINT and SIGTERM end it when the files at work are done.
///
/// @param dictionaries  the text of all dictionaries that are not built in.
/// @return the status with which the verb ends.
/// @throws UsageError   the options can't be meant.
/// @throws OutputError  nothing can be printed, logged or kept any more.
/// @throws IOError      a list or log can't be read, no process can be started.
int runBatch(const BatchOptions& options, const BatchWork& work, const std::string& dictionaries,
             Messages& messages);

} // namespace Corvid::Tool
