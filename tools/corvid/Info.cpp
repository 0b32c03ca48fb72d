#include "tools/corvid/Info.h"

#include "host/base/Exceptions.h"
#include "inspection/Summary.h"
#include "tools/corvid/CommandWarnings.h"
#include "tools/corvid/ExitStatus.h"
#include "tools/corvid/output/OpenOutput.h"
#include "tools/corvid/output/Output.h"
#include "tools/corvid/terminal/Messages.h"

#include <algorithm>

namespace Corvid::Tool {

namespace {

using Dictionary = Templates::SharedPtr<MetaMetadata::Dictionary>;

Inspection::Summary read(const ClipOptions& clip, const Dictionary& dictionary,
                         Messages& messages) {
    mxf::File file(clip.path, dictionary, messages);
    const mxf::HeaderMetadata header = readMetadata(file, clip, messages);
    Inspection::Summary summary = Inspection::summarise(file, header);
    for (const auto& each : summary.essence.contradictions) {
        mxf::Warning warning(CommandWarnings::contradiction, each.text);
        warning.set = each.set;
        warning.property = each.property;
        messages.warn(warning);
    }
    return summary;
}

/// Prints what one file holds.
class Report {
public:
    Report(const InfoOptions& options, const Dictionary& dictionary, Messages& messages)
        : options_(options), dictionary_(dictionary), messages_(messages) {}

    void print(const std::string& path) {
        messages_.setFile(path);
        // The text has them; where there is none they are messages.
        messages_.holdWarnings(!options_.json);
        ClipOptions clip = options_.clip;
        clip.path = path;
        Inspection::Summary summary;
        try {
            summary = read(clip, dictionary_, messages_);
        } catch (const Exceptions::BaseException& error) {
            messages_.holdWarnings(false);
            if (options_.json) {
                printText(failureJson(messages_.file(), messages_.warnings(),
                                      messages_.withoutFile(Platform::toUtf8(error.message())),
                                      layout()));
            }
            throw;
        }
        messages_.flush();
        if (options_.json) {
            printText(toJson(summary, messages_.warnings(), layout()));
        } else {
            printText((isFirst_ ? "" : "\n") +
                      toText(summary, messages_.warnings(), options_.text));
            isFirst_ = false;
        }
    }

private:
    JsonLayout layout() const {
        return options_.files.size() == 1 ? JsonLayout::indented : JsonLayout::line;
    }

    const InfoOptions& options_;
    const Dictionary& dictionary_;
    Messages& messages_;
    bool isFirst_ = true;
};

} // namespace

void info(const InfoOptions& options, Messages& messages) {
    if (options.files.size() == 1) {
        messages.setFile(options.files.front());
    }
    protectInputs(inputsOf(options.files, options.clip.dictionaries));
    const Dictionary dictionary = loadDictionary(options.clip.dictionaries);
    Report report(options, dictionary, messages);
    if (options.files.size() == 1) {
        report.print(options.files.front());
    } else {
        int worst = exitDone;
        for (const std::string& path : options.files) {
            bool isOutputLost = false;
            const int status = guard(
                [&] {
                    try {
                        report.print(path);
                    } catch (const OutputError&) {
                        isOutputLost = true;
                        throw;
                    }
                },
                messages);
            worst = std::max(worst, status);
            if (isOutputLost) {
                break;
            }
        }
        if (worst != exitDone) {
            throw EndedWith{static_cast<ExitStatus>(worst)};
        }
        messages.setFile("");
    }
    refuseWarnings(options.warningsAsErrors, messages);
}

} // namespace Corvid::Tool
