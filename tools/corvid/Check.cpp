#include "tools/corvid/Check.h"

#include "tools/corvid/CheckReport.h"
#include "tools/corvid/ExitStatus.h"
#include "tools/corvid/Messages.h"
#include "tools/corvid/OpenOutput.h"
#include "tools/corvid/ProgressBar.h"
#include "tools/corvid/RoundTrip.h"
#include "tools/corvid/XercesFailures.h"

namespace Corvid::Tool {

namespace {

using Dictionary = Templates::SharedPtr<MetaMetadata::Dictionary>;

CheckedFile checkFile(const ClipOptions& clip, const Dictionary& dictionary, Messages& messages) {
    CheckedFile checked;
    messages.setFile(clip.path);
    checked.file = messages.file();
    const int status = guard(
        [&] {
            mxf::File file(clip.path, dictionary, messages);
            const mxf::HeaderMetadata header = readMetadata(file, clip);
            checked.cutOffAt = header.cutOffAt;
            translateXerces([&] { checked.comparison = compareWithRoundTrip(*header.metadata); });
        },
        messages);
    if (status == exitDone) {
        checked.result = resultOf(checked.comparison, checked.cutOffAt.has_value());
    } else {
        checked.result = status == exitNoFile ? CheckResult::unreadable : CheckResult::refused;
        checked.error = messages.lastError();
    }
    checked.warnings = messages.warnings();
    return checked;
}

} // namespace

void check(const CheckOptions& options, Messages& messages) {
    protectInputs(inputsOf(options.files, options.clip.dictionaries));
    const Dictionary dictionary = loadDictionary(options.clip.dictionaries);
    const std::size_t total = options.files.size();
    CheckTally tally;
    std::vector<CheckedFile> kept; // for JSON, which is one object
    ClipOptions clip = options.clip;
    for (const std::string& path : options.files) {
        if (total != 1 && messages.showsProgress()) {
            messages.showProgress(progressBar(tally.files(), total, path, terminalColumns()));
        }
        clip.path = path;
        CheckedFile file = checkFile(clip, dictionary, messages);
        tally.add(file);
        if (options.json) {
            kept.push_back(std::move(file));
        } else {
            messages.showProgress("");
            printText(toText(file, options.all, options.colours));
        }
    }
    messages.showProgress("");
    if (options.json) {
        printText(toJson(kept));
    } else if (total != 1) {
        printText(toText(tally));
    }
    if (tally.worst() >= CheckResult::cutOff) {
        throw EndedWith{tally.worst() == CheckResult::unreadable ? exitNoFile : exitRefused};
    }
    if (total != 1) {
        messages.setFile("");
    }
    refuseWarnings(options.warningsAsErrors, messages);
}

} // namespace Corvid::Tool
