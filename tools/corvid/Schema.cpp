#include "tools/corvid/Schema.h"

#include "XMLBuilder/schema/SchemaTexts.h"
#include "tools/corvid/terminal/Messages.h"

namespace Corvid::Tool {

void schema(const SchemaOptions& options, Messages& messages) {
    std::vector<SchemaFile> files;
    for (auto& each : XMLBuilder::schemaTexts(*loadDictionary(options.dictionaries))) {
        files.push_back({std::move(each.fileName), std::move(each.text)});
    }
    writeSchemas(options, files);
    messages.note(std::to_string(files.size()) + " schemas written to " + options.folder + "; " +
                  files.front().name + " describes whole documents");
}

} // namespace Corvid::Tool
