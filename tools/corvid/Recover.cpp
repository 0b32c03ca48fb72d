#include "tools/corvid/Recover.h"

#include "editing/apply/CarryOut.h"
#include "host/mxf/rewrite/disk/SystemFiles.h"
#include "tools/corvid/output/OpenOutput.h"
#include "tools/corvid/terminal/Messages.h"
#include "tools/corvid/terminal/UsageError.h"

namespace Corvid::Tool {

void recover(const RecoverOptions& options, Messages& messages) {
    messages.setFile(options.clip);
    const bool completes = options.goal == mxf::RecoveryGoal::after;
    if (completes && !options.from.empty()) {
        throw UsageError{"--from FILE and --complete exclude each other"};
    }
    protectInputs({options.clip});
    mxf::SystemFiles files;
    if (!options.from.empty()) {
        Editing::undoEdit(files, options.clip, options.from);
        printText("the edit is undone\n");
    } else if (mxf::recover(files, options.clip, options.goal)) {
        printText(completes ? "the edit is complete\n" : "the clip is as it was before the edit\n");
    } else {
        printText("nothing to recover\n");
    }
}

} // namespace Corvid::Tool
