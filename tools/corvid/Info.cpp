#include "tools/corvid/Info.h"

#include "host/base/Exceptions.h"
#include "inspection/Summary.h"
#include "tools/corvid/ExitStatus.h"
#include "tools/corvid/output/OpenOutput.h"
#include "tools/corvid/output/Output.h"
#include "tools/corvid/reports/SummaryReport.h"
#include "tools/corvid/terminal/Messages.h"

namespace Corvid::Tool {

namespace {

using Dictionary = Templates::SharedPtr<MetaMetadata::Dictionary>;

Inspection::Summary read(const ClipOptions& clip, const Dictionary& dictionary,
                         Messages& messages) {
    mxf::File file(clip.path, dictionary, messages);
    const mxf::HeaderMetadata header = readMetadata(file, clip, messages);
    return Inspection::summarise(file, header);
}

} // namespace

void info(const InfoOptions& options, Messages& messages) {
    messages.setFile(options.clip.path);
    protectInputs(inputsOf({options.clip.path}, options.clip.dictionaries));
    const auto dictionary = loadDictionary(options.clip.dictionaries);
    Inspection::Summary summary;
    try {
        summary = read(options.clip, dictionary, messages);
    } catch (const Exceptions::BaseException& error) {
        if (options.json) {
            printText(failureJson(messages.file(), messages.warnings(),
                                  messages.withoutFile(Platform::toUtf8(error.message()))));
        }
        throw;
    }
    messages.flush();
    printText(options.json ? toJson(summary, messages.warnings())
                           : toText(summary, options.colours));
    refuseWarnings(options.warningsAsErrors, messages);
}

} // namespace Corvid::Tool
