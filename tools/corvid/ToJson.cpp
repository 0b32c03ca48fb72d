#include "tools/corvid/ToJson.h"

#include "XMLBuilder/json/MetadataJson.h"
#include "tools/corvid/ExitStatus.h"
#include "tools/corvid/KeptToEnd.h"
#include "tools/corvid/batch/CountedSource.h"
#include "tools/corvid/batch/ReadFiles.h"
#include "tools/corvid/input/StartSet.h"
#include "tools/corvid/output/Output.h"
#include "tools/corvid/terminal/Messages.h"

#include <memory>

namespace Corvid::Tool {

namespace {

using XMLBuilder::DocumentPlan;

/// Model and plan; see keptToEnd().
struct Leftovers {
    mxf::HeaderMetadata header;
    std::unique_ptr<DocumentPlan> plan;
};

void convert(const ToJsonOptions& options, const StartSet& start,
             const DictionaryPointer& dictionary, FileTask& task) {
    Messages& messages = task.messages;
    ClipOptions clip = options.clip;
    clip.path = task.path;
    const Leftover<Leftovers> work(task.isOneOfMany);
    mxf::File file(openCounted(clip, task), dictionary, messages);
    work->header = readMetadata(file, clip);
    noteOrigin(file, work->header, clip, messages);
    auto& metadata = *work->header.metadata;
    work->plan = std::make_unique<DocumentPlan>(
        metadata, start.in(metadata),
        DocumentPlan::Manner{options.referencesAsValues, options.structuralOnly});
    // Nothing else can go wrong with the data.
    refuseWarnings(options.warningsAsErrors, messages);
    const bool isLine = task.isOneOfMany && options.batch.outputFolder.empty();
    XMLBuilder::JsonContent content;
    content.layout =
        options.compact || isLine ? XMLUtils::Layout::compact : XMLUtils::Layout::indented;
    content.file = messages.file();
    content.partition = work->header.partition;
    writeJson(*work->plan, content, task.output);
    task.output.commit();
}

} // namespace

void toJson(const ToJsonOptions& options, Messages& messages) {
    const StartSet start(options.start);
    BatchWork many;
    many.suffix = ".json";
    many.mayDestroy = options.force;
    writeDocuments(
        options.batch, options.clip.dictionaries, options.output, std::move(many),
        [&](const DictionaryPointer& dictionary, FileTask& task) {
            convert(options, start, dictionary, task);
        },
        messages);
}

} // namespace Corvid::Tool
