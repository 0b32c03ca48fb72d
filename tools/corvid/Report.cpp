#include "tools/corvid/Report.h"

#include "editing/change/FindChanges.h"
#include "editing/change/MatchSets.h"
#include "host/base/Exceptions.h"
#include "tools/corvid/ExitStatus.h"
#include "tools/corvid/KeptToEnd.h"
#include "tools/corvid/batch/CountedSource.h"
#include "tools/corvid/batch/ReadFiles.h"
#include "tools/corvid/input/ReadSummary.h"
#include "tools/corvid/output/OpenOutput.h"
#include "tools/corvid/page/PageComparison.h"
#include "tools/corvid/terminal/Messages.h"
#include "tools/corvid/terminal/UsageError.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>

namespace Corvid::Tool {

namespace {

using XMLBuilder::DocumentPlan;

/// The Preface, or of damaged metadata that has none the first set.
/// @throws InvalidFormat  there is no set that the dictionary knows.
const Metadata::MetadataSet& rootOf(const Metadata::PartitionMetadata& metadata) {
    const auto prefaces = metadata.find(Metadata::Structural::StructuralMetadataKeys::preface());
    if (!prefaces.empty()) {
        return *prefaces.front();
    }
    const auto known = std::find_if(metadata.begin(), metadata.end(), [](const auto* set) {
        return set->metaMetadataSet() != nullptr;
    });
    if (known == metadata.end()) {
        throw Exceptions::InvalidFormat("the partition has no set that the dictionary knows",
                                        CORVID_HERE);
    }
    return **known;
}

/// A clip with all that is said of it.
struct Reported {
    DataIO::RandomAccessSource* source = nullptr; ///< of the file
    std::optional<mxf::File> file;
    mxf::HeaderMetadata header;
    Inspection::Summary summary;
    std::unique_ptr<DocumentPlan> plan;
};

/// Models and plans; see Leftover.
struct Leftovers {
    Reported clip;
    Reported before; ///< of two clips the first
    mxf::HeaderMetadata
        compared; ///< of two the second once more, with the InstanceUIDs of the first
};

void read(Reported& clip, const std::string& path, const ReportOptions& options,
          const DictionaryPointer& dictionary, FileTask& task) {
    ClipOptions choice = options.clip;
    choice.path = path;
    task.messages.setFile(path);
    auto opened = openCounted(choice, task);
    clip.source = opened.get();
    clip.file.emplace(std::move(opened), dictionary, task.messages);
    clip.header = readMetadata(*clip.file, choice);
    noteOrigin(*clip.file, clip.header, choice, task.messages);
    clip.summary = readSummary(*clip.file, clip.header, task.messages);
    // A page is handed on: what folders it is from is nobody's business.
    clip.summary.file = std::filesystem::path(clip.summary.file).filename().string();
    task.messages.flush();
    refuseWarnings(options.warningsAsErrors, task.messages);
    auto& metadata = *clip.header.metadata;
    clip.plan = std::make_unique<DocumentPlan>(metadata, rootOf(metadata), DocumentPlan::Manner{});
}

PageContent contentOf(const Reported& clip, RawBytes raw, const WarningLog& warnings) {
    const bool isMuch = clip.summary.sets > mostSetsWithAllBytes ||
                        clip.header.end - clip.header.begin > mostMetadataWithAllBytes;
    const bool isCut = raw == RawBytes::automatic && isMuch;
    return {*clip.source, clip.header, *clip.plan,
            clip.summary, warnings,    isCut ? std::make_optional(rawBytesOfMany) : std::nullopt};
}

void write(const ReportOptions& options, const DictionaryPointer& dictionary, FileTask& task) {
    const Leftover<Leftovers> work(task.isOneOfMany);
    read(work->clip, task.path, options, dictionary, task);
    writePage(contentOf(work->clip, options.raw, task.messages.warnings()), nullptr, task.output);
    task.output.commit();
}

mxf::HeaderMetadata readAgain(const std::string& path, const ReportOptions& options,
                              const DictionaryPointer& dictionary) {
    ClipOptions choice = options.clip;
    choice.path = path;
    mxf::NoWarnings reported;
    mxf::File file(openClip(choice, reported), dictionary, reported);
    return readMetadata(file, choice);
}

/// One page of two clips.
void writeBoth(const ReportOptions& options, Messages& messages) {
    const std::string& first = options.batch.files.front();
    const std::string& second = options.batch.files.back();
    if (first == "-" || second == "-") {
        throw UsageError{"of two clips neither can be standard input"};
    }
    const auto output =
        openOutput(options.output, inputsOf(options.batch.files, options.clip.dictionaries),
                   options.force ? MayReplace::everything : MayReplace::noMxfFile);
    const DictionaryPointer dictionary = loadDictionary(options.clip.dictionaries);
    FileTask task{second, *output, messages};
    Leftovers& work = keptToEnd<Leftovers>();
    read(work.before, first, options, dictionary, task);
    const WarningLog ofFirst = messages.warnings();
    read(work.clip, second, options, dictionary, task);
    work.compared = readAgain(second, options, dictionary);
    auto& old = *work.before.header.metadata;
    auto& compared = *work.compared.metadata;
    const std::size_t others = Editing::matchSets(old, compared);
    const Editing::Changes changes = Editing::findChanges(old, compared);
    const PageContent before = contentOf(work.before, options.raw, ofFirst);
    const PageComparison comparison{before, changes, others, compared, *dictionary};
    writePage(contentOf(work.clip, options.raw, messages.warnings()), &comparison, *output);
    output->commit();
}

} // namespace

void report(const ReportOptions& options, Messages& messages) {
    if (options.batch.files.size() == 2 && !options.batch.isAskedFor()) {
        writeBoth(options, messages);
        return;
    }
    BatchWork many;
    many.suffix = ".html";
    many.isDocument = true;
    many.mayDestroy = options.force;
    writeDocuments(
        options.batch, options.clip.dictionaries, options.output, std::move(many),
        [&options](const DictionaryPointer& dictionary, FileTask& task) {
            write(options, dictionary, task);
        },
        messages);
}

} // namespace Corvid::Tool
