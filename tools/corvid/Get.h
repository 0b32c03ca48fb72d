#pragma once

#include "tools/corvid/batch/BatchOptions.h"
#include "tools/corvid/input/Clip.h"

#include <vector>

namespace Corvid::Tool {

class Messages;

/// The options of `corvid get`.
struct GetOptions {
    enum class Form : unsigned char { lines, csv, spreadsheet, json };

    BatchOptions batch;                    ///< the files
    ClipOptions clip;                      ///< how each of them is read; its path does not matter
    std::vector<std::string> questions;    ///< not empty; see get/Question.h
    std::vector<std::string> requirements; ///< likewise; of files that are to be asked
    Form form = Form::lines;
    bool withFilename = false;     ///< in front of each line
    bool endsWithZeros = false;    ///< and not with line breaks
    bool warningsAsErrors = false; ///< after all is printed
};

/// Prints on standard output the values that questions about files have as answers, one on a line
/// or a line for each file.
/// @throws UsageError  a question is none.
/// @throws EndedWith   one has no answer.
/// @throws IOError, BaseException  as guard() takes them.
void get(const GetOptions& options, Messages& messages);

} // namespace Corvid::Tool
