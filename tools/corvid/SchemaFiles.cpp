#include "tools/corvid/Schema.h"

#include "host/dataio/Memory.h"
#include "tools/corvid/output/HiddenName.h"
#include "tools/corvid/output/OpenOutput.h"
#include "tools/corvid/schema/JsonSchema.h"
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

void writeSchemas(const SchemaOptions& options, const std::vector<SchemaFile>& schemas) {
    const auto inputs = inputsOf({}, options.dictionaries);
    const std::filesystem::path folder = options.folder;
    makeFolder(folder);
    // All are written before the first gets its name.
    std::vector<std::unique_ptr<Output>> outputs;
    for (const SchemaFile& each : schemas) {
        auto output = openOutput((folder / each.name).string(), inputs,
                                 options.force ? MayReplace::everything : MayReplace::noMxfFile);
        output->write(reinterpret_cast<const unsigned char*>(each.text.data()), each.text.size());
        outputs.push_back(std::move(output));
    }
    // A signal in between would leave some old and some new.
    const SignalsHeldBack held;
    for (const auto& output : outputs) {
        output->commit();
    }
}

void jsonSchema(const SchemaOptions& options, Messages& messages) {
    DataIO::Memory::MemoryDataSink text;
    writeJsonSchema(*loadDictionary(options.dictionaries), text);
    const SchemaFile file{"corvid-metadata.schema.json",
                          {reinterpret_cast<const char*>(text.rawBuffer()), text.serializedSize()}};
    writeSchemas(options, {file});
    messages.note("1 schema written to " + options.folder + "; " + file.name +
                  " describes what to-json writes");
}

} // namespace Corvid::Tool
