#include "tools/corvid/Schema.h"

#include "XMLBuilder/schema/SchemaTexts.h"
#include "tools/corvid/output/HiddenName.h"
#include "tools/corvid/output/OpenOutput.h"
#include "tools/corvid/terminal/Messages.h"

#include <filesystem>
#include <memory>

namespace Corvid::Tool {

namespace {

/// @throws OutputError  it can't be made.
void makeFolder(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) {
        throw OutputError(folder.string(), "can't make the folder", error.value());
    }
}

} // namespace

void schema(const SchemaOptions& options, Messages& messages) {
    const auto inputs = inputsOf({}, options.dictionaries);
    const auto schemas = XMLBuilder::schemaTexts(*loadDictionary(options.dictionaries));
    const std::filesystem::path folder = options.folder;
    makeFolder(folder);
    // All are written before the first gets its name.
    std::vector<std::unique_ptr<Output>> outputs;
    for (const auto& each : schemas) {
        auto output = openOutput((folder / each.fileName).string(), inputs,
                                 options.force ? MayReplace::everything : MayReplace::noMxfFile);
        output->write(reinterpret_cast<const unsigned char*>(each.text.data()), each.text.size());
        outputs.push_back(std::move(output));
    }
    {
        // A signal in between would leave some old and some new.
        const SignalsHeldBack held;
        for (const auto& output : outputs) {
            output->commit();
        }
    }
    messages.note(std::to_string(schemas.size()) + " schemas written to " + options.folder + "; " +
                  schemas.front().fileName + " describes whole documents");
}

} // namespace Corvid::Tool
