#include "tools/corvid/EditClip.h"

#include "host/dataio/OpenSource.h"
#include "host/mxf/rewrite/RewritableFile.h"
#include "tools/corvid/CommandWarnings.h"
#include "tools/corvid/ExitStatus.h"
#include "tools/corvid/input/Clip.h"
#include "tools/corvid/input/ClipToEdit.h"
#include "tools/corvid/input/StaleFiles.h"
#include "tools/corvid/output/OpenOutput.h"
#include "tools/corvid/reports/ChangeReport.h"
#include "tools/corvid/reports/JsonText.h"
#include "tools/corvid/terminal/Messages.h"
#include "tools/corvid/terminal/ProgressBar.h"
#include "tools/corvid/terminal/UsageError.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>

namespace Corvid::Tool {

namespace {

using Editing::ClipEditor;
using Editing::CopyChoice;
using Editing::EditPlan;
using Dictionary = Templates::SharedPtr<MetaMetadata::Dictionary>;

std::optional<CopyChoice> copyChoiceOf(const std::string& text) {
    using Kind = CopyChoice::Kind;
    if (text == "all" || text == "header" || text == "footer") {
        return CopyChoice{text == "all"      ? Kind::all
                          : text == "header" ? Kind::header
                                             : Kind::footer};
    }
    std::uint32_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end || text.empty()) {
        return std::nullopt;
    }
    return CopyChoice{Kind::number, number};
}

bool isSameFile(const std::string& a, const std::string& b) {
    std::error_code nothing;
    return std::filesystem::equivalent(a, b, nothing);
}

/// Whether two files to be written would be one, by whatever paths.
bool isOnePlace(const std::string& a, const std::string& b) {
    namespace fs = std::filesystem;
    std::error_code nothing;
    const auto placeOf = [&](const std::string& path) {
        return fs::weakly_canonical(fs::absolute(path, nothing), nothing);
    };
    return !a.empty() && !b.empty() && (isSameFile(a, b) || placeOf(a) == placeOf(b));
}

/// Refuses what can't be meant, and files that would never end.
void checkOptions(const ClipEdit& options, const std::vector<std::string>& inputs) {
    const std::string& output = options.target.newFile;
    if (options.clip == "-") {
        throw UsageError{"the clip is a file that can be changed or copied, not standard input"};
    }
    if (std::error_code nothing; std::filesystem::exists(options.clip, nothing) &&
                                 !std::filesystem::is_regular_file(options.clip, nothing)) {
        throw Exceptions::IOError("not a file that can be changed", CORVID_HERE);
    }
    if (output.empty() && !options.inPlace && !options.dryRun) {
        throw UsageError{"-o FILE, --in-place or --dry-run is missing"};
    }
    if (!output.empty() && options.inPlace) {
        throw UsageError{"-o FILE and --in-place exclude each other"};
    }
    if (output == "-") {
        throw UsageError{"an edited clip goes to a file, not to standard output"};
    }
    if (isOnePlace(options.target.undo, options.log)) {
        throw UsageError{"--undo and --log need a file each"};
    }
    if (isOnePlace(output, options.log)) {
        throw UsageError{"-o and --log need a file each"};
    }
    for (const std::string& file : inputs) {
        if (!output.empty() && isSameFile(output, file)) {
            throw UsageError{output +
                             " is read, so it can't be written; --in-place changes a clip"};
        }
    }
    protectInputs(inputs);
}

/// What the edit leaves in the file's history.
Editing::Modification modification(const std::string& version) {
    constexpr std::array<Types::u8, 16> productUID = {0x5c, 0x0f, 0x9b, 0x52, 0xd1, 0x3e,
                                                      0x4a, 0x6b, 0x9e, 0x77, 0x2a, 0x41,
                                                      0x8c, 0x60, 0x13, 0xd5};
    return {"Corvid", "corvid", version, "Linux", Types::UUID(productUID), Editing::currentTime()};
}

Editing::EditOptions editOptionsOf(const ClipEdit& options) {
    Editing::EditOptions edit = options.edit;
    edit.copies = copyChoiceOf(options.partitions).value_or(CopyChoice());
    if (options.recordsEdit) {
        edit.modification = modification(options.version);
    }
    return edit;
}

std::vector<std::string> namesOf(const std::vector<std::size_t>& numbers,
                                 const mxf::Partitions& partitions) {
    std::vector<std::string> names;
    names.reserve(numbers.size());
    for (const std::size_t number : numbers) {
        names.push_back(describe(number, partitions[number]));
    }
    return names;
}

void warnOfCopies(const EditPlan& plan, const mxf::Partitions& partitions, Messages& messages) {
    for (const std::string& copy : namesOf(plan.left, partitions)) {
        messages.warn({CommandWarnings::copiesDiffer,
                       copy + " keeps its header metadata, so closed copies differ"});
    }
}

/// Says before anything is written what growth means for the clip, and what it is for.
void warnOfGrowth(const EditPlan& plan, const ClipEdit& options, const MakePlan& makePlan,
                  ClipEditor& editor, Editing::EditOptions edit, Messages& messages) {
    if (plan.movesFixedEssence) {
        messages.warn({CommandWarnings::essenceMoves,
                       "the clip becomes longer, and its essence moves from where the editing "
                       "system that made it may expect it"});
    }
    if (!options.dryRun || !edit.modification || plan.rewrite.insertions.empty()) {
        return;
    }
    edit.modification.reset();
    if (makePlan(editor, edit).rewrite.insertions.empty()) {
        messages.note("the clip becomes longer only for the record of the edit, which "
                      "--no-identification leaves out");
    }
}

/// Opens the file for the record of the edit, before anything is changed; null where none is
/// wanted.
std::unique_ptr<Output> openLog(const ClipEdit& options, const std::vector<std::string>& inputs) {
    return options.log.empty() ? nullptr : openOutput(options.log, inputs, MayReplace::noMxfFile);
}

void writeLog(const ClipEdit& options, const WantedEdit& wanted, nlohmann::ordered_json record,
              Output& output) {
    record.update(wanted.origin);
    record["version"] = options.version;
    const std::string text = jsonText(record) + "\n";
    try {
        output.write(reinterpret_cast<const unsigned char*>(text.data()), text.size());
        output.commit();
    } catch (const Exceptions::IOError& error) {
        throw Exceptions::IOError("the edit is done, but not its record: " +
                                      Platform::toUtf8(error.message()),
                                  CORVID_HERE);
    }
}

mxf::CopyProgress progressOn(Messages& messages, const std::string& path) {
    if (!messages.showsProgress()) {
        return {};
    }
    return [&messages, path](std::uint64_t done, std::uint64_t all) {
        messages.showProgress(progressBar(static_cast<std::size_t>(done),
                                          static_cast<std::size_t>(all), "", path,
                                          terminalColumns()));
    };
}

/// Says what is not known of other programs that could have been at the clip during the edit.
void warnOfOthers(const mxf::SystemFiles& files, Messages& messages) {
    using Lease = mxf::SystemFiles::Lease;
    if (files.lacksLocks()) {
        messages.warn({CommandWarnings::notLocked,
                       "the file system has no locks, so another program could have changed the "
                       "clip meanwhile unnoticed"});
    } else if (files.lastLease() == Lease::unknown) {
        messages.warn({CommandWarnings::notLocked,
                       "the system grants no lease on the clip, so another program could have had "
                       "it open meanwhile unnoticed"});
    } else if (files.lastLease() == Lease::openElsewhere) {
        messages.warn({CommandWarnings::openElsewhere,
                       "another program has the clip open and may have read it half edited"});
    }
}

/// Takes the hashes of the edited file.
void hashEdited(const ClipEdit& options, bool hashesHeaders, EditReport& report,
                Messages& messages) {
    const std::string& newFile = options.target.newFile;
    const auto source = DataIO::openSource(newFile.empty() ? options.clip : newFile);
    mxf::RewritableFile file(*source);
    if (hashesHeaders) {
        report.headersAfter = Editing::headerHashes(file, *source, report.plan.copies);
    }
    if (options.hashesEssence) {
        report.essence = Editing::essenceHash(file, *source, progressOn(messages, source->name()));
        messages.showProgress("");
    }
}

/// Carries an edit out and records it.
void makeEdit(const ClipEdit& options, const WantedEdit& wanted,
              const std::vector<std::string>& inputs, ClipToEdit& clip, ClipEditor& editor,
              EditReport& report, Messages& messages) {
    const auto log = openLog(options, inputs);
    const bool isRecorded = log || options.json;
    if (isRecorded) {
        report.headersBefore =
            Editing::headerHashes(editor.file(), *clip.source, report.plan.copies);
    }
    if (options.hashesEssence) {
        Editing::requireCertainEssence(editor.file());
    }
    report.way = carryOut(clip.files, options.clip, std::move(clip.source), report.plan,
                          clip.status.value(), options.target, progressOn(messages, options.clip));
    messages.showProgress("");
    warnOfOthers(clip.files, messages);
    if (isRecorded || options.hashesEssence) {
        hashEdited(options, isRecorded, report, messages);
    }
    if (log) {
        writeLog(options, wanted, toJson(report), *log);
    }
}

} // namespace

bool isCopyChoice(const std::string& text) { return copyChoiceOf(text).has_value(); }

void editClip(const ClipEdit& options, const WantedEdit& wanted, Messages& messages) {
    messages.setFile(options.clip);
    std::vector<std::string> inputs = wanted.inputs;
    inputs.push_back(options.clip);
    inputs = inputsOf(std::move(inputs), options.dictionaries);
    checkOptions(options, inputs);
    const auto dictionary = loadDictionary(options.dictionaries);
    ClipToEdit clip(options.clip);
    const MakePlan makePlan = wanted.read(dictionary);
    std::optional<ClipEditor> read;
    clip.whole([&] { read.emplace(*clip.source, dictionary, messages); });
    ClipEditor& editor = *read;
    Editing::EditOptions edit = editOptionsOf(options);
    edit.blockSize = Editing::blockSizeOf(clip.files, options.clip);
    const EditPlan plan = clip.whole([&] { return makePlan(editor, edit); });
    warnOfCopies(plan, editor.partitions(), messages);
    warnOfGrowth(plan, options, makePlan, editor, edit, messages);
    refuseWarnings(options.warningsAsErrors, messages);
    EditReport report{messages.file(), plan, Editing::EditWay::nothing,
                      namesOf(plan.copies, editor.partitions()), *dictionary};
    if (options.dryRun) {
        report.way = wayOf(clip.files, options.clip, *clip.source, plan, options.target);
        if (options.hashesEssence) {
            report.essence = Editing::essenceHash(editor.file(), *clip.source,
                                                  progressOn(messages, options.clip));
            messages.showProgress("");
        }
    } else {
        messages.flush(); // it may be a reason to stop the edit
        makeEdit(options, wanted, inputs, clip, editor, report, messages);
    }
    if (options.target.newFile.empty() && !plan.rewrite.isEmpty()) {
        noteStaleFiles(options.clip, plan.rewrite.newSize() != plan.rewrite.oldSize, messages);
    }
    messages.flush();
    printText(options.json ? jsonText(toJson(report)) + "\n"
                           : (options.dryRun ? toText(plan, *dictionary) : "") + wayText(report) +
                                 "\n" + essenceText(report));
    if (options.dryRun && !plan.isEmpty()) {
        throw EndedWith{exitRefused};
    }
}

} // namespace Corvid::Tool
