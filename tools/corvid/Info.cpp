#include "tools/corvid/Info.h"

#include "tools/corvid/Messages.h"
#include "tools/corvid/Output.h"
#include "tools/corvid/Summary.h"

namespace Corvid::Tool {

void info(const InfoOptions& options, Messages& messages) {
    messages.setFile(options.clip.path);
    mxf::File file(options.clip.path, loadDictionary(options.clip.dictionaries), messages);
    const mxf::HeaderMetadata header = readMetadata(file, options.clip);
    const Summary summary = summarise(file, header);
    printText(options.json ? toJson(summary) : toText(summary, options.colours));
}

} // namespace Corvid::Tool
