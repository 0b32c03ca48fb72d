#include "tools/corvid/Check.h"

#include "editing/RoundTrip.h"
#include "host/dataio/BufferedSink.h"
#include "tools/corvid/ExitStatus.h"
#include "tools/corvid/output/OpenOutput.h"
#include "tools/corvid/reports/CheckJson.h"
#include "tools/corvid/terminal/Messages.h"
#include "tools/corvid/terminal/ProgressBar.h"

#include <optional>
#include <unistd.h>

namespace Corvid::Tool {

namespace {

using Dictionary = Templates::SharedPtr<MetaMetadata::Dictionary>;

CheckedFile checkFile(const ClipOptions& clip, const Dictionary& dictionary, std::size_t listed,
                      Messages& messages) {
    CheckedFile checked;
    messages.setFile(clip.path);
    checked.file = messages.file();
    const int status = guard(
        [&] {
            mxf::File file(clip.path, dictionary, messages);
            const mxf::HeaderMetadata header = readMetadata(file, clip, messages);
            checked.cutOffAt = header.cutOffAt;
            checked.comparison = Editing::compareWithRoundTrip(*header.metadata, listed);
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

/// How many differences of a kind are listed.
std::size_t listedOfAKind(const CheckOptions& options) {
    return options.all    ? Editing::Differences::mostListedAtAll
           : options.json ? Editing::Differences::mostListed
                          : shownOfAKind;
}

} // namespace

void check(const CheckOptions& options, Messages& messages) {
    protectInputs(inputsOf(options.files, options.clip.dictionaries));
    const Dictionary dictionary = loadDictionary(options.clip.dictionaries);
    const std::size_t total = options.files.size();
    CheckTally tally;
    DescriptorOutput output(STDOUT_FILENO, "standard output");
    DataIO::BufferedSink buffer(output);
    std::optional<CheckJson> report;
    if (options.json) {
        report.emplace(buffer);
    }
    ClipOptions clip = options.clip;
    for (const std::string& path : options.files) {
        if (total != 1 && messages.showsProgress()) {
            messages.showProgress(progressBar(tally.files(), total, path, terminalColumns()));
        }
        clip.path = path;
        const CheckedFile file = checkFile(clip, dictionary, listedOfAKind(options), messages);
        tally.add(file);
        messages.showProgress("");
        if (report) {
            report->add(file);
            buffer.flush();
        } else {
            printText(toText(file, options.colours));
        }
    }
    if (report) {
        report->finish(tally);
        buffer.flush();
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
