#pragma once

#include "editing/apply/CarryOut.h"
#include "tools/corvid/input/DictionaryChoice.h"

namespace Corvid::Tool {

class Messages;

/// The options of `corvid apply`.
struct ApplyOptions {
    std::string document; ///< "-" is standard input
    std::string clip;
    DictionaryChoice dictionaries;
    std::string partitions = "all"; ///< all, header, footer, or a number from 0
    Editing::EditOptions edit;
    bool recordsEdit = true; ///< adds an Identification and what belongs to it
    Editing::EditTarget target;
    bool inPlace = false;
    bool dryRun = false;
    bool json = false;
    bool hashesEssence = false;
    std::string log; ///< a file for the record of the edit; empty for none
    bool warningsAsErrors = false;
    std::string version; ///< of the command, for what the edit records
};

/// True for what `ApplyOptions::partitions` may be.
bool isCopyChoice(const std::string& text);

/// Makes the header metadata of a clip what a document says.
///
/// @throws UsageError, EndedWith, IOError, BaseException  as guard() takes them. Where something is
///     refused, nothing has been written.
void apply(const ApplyOptions& options, Messages& messages);

} // namespace Corvid::Tool
