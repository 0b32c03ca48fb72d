#include "tools/corvid/Info.h"

#include "host/base/Exceptions.h"
#include "tools/corvid/ExitStatus.h"
#include "tools/corvid/Messages.h"
#include "tools/corvid/OpenOutput.h"
#include "tools/corvid/Output.h"
#include "tools/corvid/Summary.h"

namespace Corvid::Tool {

namespace {

using Dictionary = Templates::SharedPtr<MetaMetadata::Dictionary>;

Summary read(const ClipOptions& clip, const Dictionary& dictionary, Messages& messages) {
    mxf::File file(clip.path, dictionary, messages);
    const mxf::HeaderMetadata header = readMetadata(file, clip);
    return summarise(file, header);
}

} // namespace

void info(const InfoOptions& options, Messages& messages) {
    messages.setFile(options.clip.path);
    protectInputs(inputsOf({options.clip.path}, options.clip.dictionaries));
    const auto dictionary = loadDictionary(options.clip.dictionaries);
    Summary summary;
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
