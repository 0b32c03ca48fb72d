#pragma once

#include "tools/corvid/batch/BatchOptions.h"
#include "tools/corvid/input/Clip.h"

namespace Corvid::Tool {

class Messages;

/// The options of `corvid check`.
struct CheckOptions {
    BatchOptions batch; ///< the files
    ClipOptions clip;   ///< how each of them is read; its path does not matter
    bool json = false;
    bool warningsAsErrors = false; ///< after all is printed
    bool all = false;              ///< lists up to Differences::mostListedAtAll of a kind
    bool colours = false;          ///< no part of JSON
};

/// Takes the metadata of each file to XML and back and prints what is different then. A file that
/// can't be checked is reported as a message, and the next one follows.
///
/// @throws EndedWith  a file is cut off, different, refused or unreadable: the worst of them
/// counts.
/// @throws IOError, BaseException  the dictionaries can't be read, the result can't be written.
void check(const CheckOptions& options, Messages& messages);

} // namespace Corvid::Tool
