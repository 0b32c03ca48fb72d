#pragma once

#include "tools/corvid/batch/BatchOptions.h"
#include "tools/corvid/input/Clip.h"

namespace Corvid::Tool {

class Messages;

/// The options of `corvid diff`.
struct DiffOptions {
    std::string before; ///< an MXF file or a document; "-" is standard input
    std::string after;  ///< likewise
    /// Has what is at the paths of `batch.files`, which are compared with that; empty where
    /// `before` and `after` are.
    std::string folder;
    BatchOptions batch;
    ClipOptions clips; ///< how MXF files are read; without path
    bool json = false;
};

/// Prints on standard output what makes the metadata of one file that of another.
/// @throws EndedWith  they differ, or one of them can't be read.
/// @throws UsageError, IOError, BaseException  as guard() takes them.
void diff(const DiffOptions& options, Messages& messages);

} // namespace Corvid::Tool
