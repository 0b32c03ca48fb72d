#pragma once

#include "editing/apply/CarryOut.h"
#include "tools/corvid/input/DictionaryChoice.h"

#include <functional>
#include <nlohmann/json_fwd.hpp>

namespace Corvid::Tool {

class Messages;

/// How a clip is edited, whatever the edit is.
struct ClipEdit {
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

/// True for what `ClipEdit::partitions` may be.
bool isCopyChoice(const std::string& text);

/// Plans what an edit makes of a clip that is open.
using MakePlan =
    std::function<Editing::EditPlan(Editing::ClipEditor&, const Editing::EditOptions&)>;

/// What the header metadata of a clip is to be.
struct WantedEdit {
    std::vector<std::string> inputs;      ///< files that are read beside the clip
    const nlohmann::ordered_json& origin; ///< says for the record of the edit what was wanted
    /// Reads what is wanted, before the clip is read.
    std::function<MakePlan(const Templates::SharedPtr<MetaMetadata::Dictionary>&)> read;
};

/// Edits a clip, or shows what would change.
///
/// @throws UsageError, EndedWith, IOError, BaseException  as guard() takes them. Where something is
///     refused, nothing has been written.
void editClip(const ClipEdit& options, const WantedEdit& wanted, Messages& messages);

} // namespace Corvid::Tool
