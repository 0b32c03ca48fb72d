#include "tools/corvid/Info.h"

#include "host/base/Exceptions.h"
#include "tools/corvid/ExitStatus.h"
#include "tools/corvid/batch/CountedSource.h"
#include "tools/corvid/batch/ReadFiles.h"
#include "tools/corvid/input/ReadSummary.h"
#include "tools/corvid/output/Output.h"
#include "tools/corvid/terminal/Messages.h"

namespace Corvid::Tool {

namespace {

using Dictionary = Templates::SharedPtr<MetaMetadata::Dictionary>;

Inspection::Summary read(const InfoOptions& options, const Dictionary& dictionary, FileTask& task) {
    ClipOptions clip = options.clip;
    clip.path = task.path;
    auto source = openCounted(clip, task);
    // That an edit was interrupted is no matter for a count in the text.
    task.messages.flush();
    // The text has the others; where there is none they are messages.
    task.messages.holdWarnings(!options.json);
    mxf::File file(std::move(source), dictionary, task.messages);
    const mxf::HeaderMetadata header = readMetadata(file, clip);
    return readSummary(file, header, task.messages);
}

/// Writes what one file holds.
void write(const InfoOptions& options, const Dictionary& dictionary, FileTask& task) {
    Messages& messages = task.messages;
    const JsonLayout layout = task.isOneOfMany ? JsonLayout::line : JsonLayout::indented;
    Inspection::Summary summary;
    try {
        summary = read(options, dictionary, task);
    } catch (const Exceptions::BaseException& error) {
        messages.holdWarnings(false);
        if (options.json) {
            writeWhole(task.output,
                       failureJson(messages.file(), messages.warnings(),
                                   messages.withoutFile(Platform::toUtf8(error.message())),
                                   layout));
        }
        throw;
    }
    messages.flush();
    writeWhole(task.output, options.json ? toJson(summary, messages.warnings(), layout)
                                         : toText(summary, messages.warnings(), options.text));
    refuseWarnings(options.warningsAsErrors, messages);
}

} // namespace

void info(const InfoOptions& options, Messages& messages) {
    BatchWork many;
    many.suffix = options.json ? ".json" : ".txt";
    many.between = options.json ? "" : "\n";
    readFiles(
        options.batch, options.clip.dictionaries, std::move(many),
        [&options](const Dictionary& dictionary, FileTask& task) {
            write(options, dictionary, task);
        },
        messages);
}

} // namespace Corvid::Tool
