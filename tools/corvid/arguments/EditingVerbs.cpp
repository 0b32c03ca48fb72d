#include "Corvid/Version.h"
#include "tools/corvid/Apply.h"
#include "tools/corvid/Recover.h"
#include "tools/corvid/Set.h"
#include "tools/corvid/arguments/SharedArguments.h"
#include "tools/corvid/arguments/Verbs.h"

#include <memory>

namespace Corvid::Tool {

namespace {

/// The options of verbs that edit a clip.
void declareEdit(CLI::App& verb, const std::shared_ptr<ClipEdit>& options) {
    options->version = CORVID_VERSION;
    declareDictionaries(verb, options->dictionaries);
    verb.add_option("--partitions", options->partitions,
                    "Copies of the header metadata to change: all, header, footer, or that of a "
                    "partition by its number, from 0")
        ->type_name("all|header|footer|N")
        ->check(
            [](const std::string& text) {
                return isCopyChoice(text)
                           ? std::string()
                           : "expected all, header, footer or a number, not '" + text + "'";
            },
            "")
        ->capture_default_str()
        ->group(processing);
    verb.add_flag("--allow-technical", options->edit.allowsTechnical,
                  "Change also what the file is made of: identifiers of packages and tracks, "
                  "rates, durations, kinds of essence")
        ->group(processing);
    verb.add_flag("--close-header", options->edit.closesHeader,
                  "Make an open or incomplete header partition closed and complete, with the "
                  "header metadata of the footer")
        ->group(processing);
    verb.add_flag_function(
            "--no-identification", [options](std::int64_t) { options->recordsEdit = false; },
            "Leave the file's history as it is: no Identification and no dates of this edit")
        ->group(processing);
    verb.add_option("--reserve", options->edit.reserve,
                    "Room for later edits where the metadata must grow")
        ->type_name("BYTES")
        ->check(CLI::Range(std::uint64_t{0}, Editing::greatestReserve).description(""))
        ->capture_default_str()
        ->group(processing);
    declareStrictness(verb, options->warningsAsErrors,
                      "Write nothing and exit with status 1 if there are warnings");
    verb.add_option("-o,--output", options->target.newFile, "File to write the edited clip to")
        ->type_name("FILE")
        ->check(someName())
        ->group(output);
    verb.add_flag("--in-place", options->inPlace, "Change the clip itself")->group(output);
    verb.add_flag("--dry-run", options->dryRun,
                  "Show what would change and how it would be written; exit with status 1 if "
                  "something would")
        ->group(output);
    verb.add_flag("--json", options->json, "Print JSON for programs")->group(output);
    verb.add_option("--log", options->log, "File for a record of the edit in JSON")
        ->type_name("FILE")
        ->check(someName())
        ->group(output);
    verb.add_flag("--hash", options->hashesEssence,
                  "Print the hash of essence and index tables after the edit; reads the whole file")
        ->group(output);
    verb.add_option("--undo", options->target.undo,
                    "File for what takes the edit back: corvid recover CLIP.mxf --from FILE")
        ->type_name("FILE")
        ->check(someName())
        ->group(output);
    verb.add_option("--recovery-dir", options->target.recoveryFolder,
                    "Folder for the recovery file while the clip changes, instead of its own")
        ->type_name("DIR")
        ->check(CLI::Validator(CLI::ExistingDirectory).description(""))
        ->group(output);
    verb.add_flag("--break-links", options->target.breaksLinks,
                  "Replace the clip also where it has other hard links, which keep the old file")
        ->group(output);
    verb.add_flag("--preserve-times", options->target.preservesTimes,
                  "Keep the clip's time of modification")
        ->group(output);
}

} // namespace

Work declareApply(CLI::App& verb) {
    const auto options = std::make_shared<ApplyOptions>();
    verb.add_option("DOC.xml", options->document, "Document to read; - is standard input")
        ->required()
        ->type_name("DOC.xml")
        ->group(input);
    verb.add_option("CLIP.mxf", options->clip, "MXF file whose header metadata it changes")
        ->required()
        ->type_name("CLIP.mxf")
        ->group(input);
    declareEdit(verb, options);
    return [options](Messages& messages) { apply(*options, messages); };
}

Work declareSet(CLI::App& verb) {
    const auto options = std::make_shared<SetOptions>();
    verb.add_option("CLIP.mxf", options->clip, "MXF file whose header metadata changes")
        ->required()
        ->type_name("CLIP.mxf")
        ->group(input);
    verb.add_option("PATH=VALUE", options->assignments,
                    "Path as for get, and the new value: MaterialPackage/PackageName=Title; += "
                    "appends to a list, -= removes")
        ->required()
        ->type_name("PATH=VALUE")
        ->group(input);
    verb.add_flag("--all", options->all, "Set all values that a path leads to")->group(processing);
    declareEdit(verb, options);
    return [options](Messages& messages) { set(*options, messages); };
}

Work declareRecover(CLI::App& verb) {
    const auto options = std::make_shared<RecoverOptions>();
    verb.add_option("CLIP.mxf", options->clip, "MXF file whose edit was interrupted")
        ->required()
        ->type_name("CLIP.mxf")
        ->group(input);
    verb.add_option("--from", options->from,
                    "Take back a finished edit, with the file that apply --undo wrote")
        ->type_name("FILE")
        ->check(someName())
        ->group(input);
    verb.add_flag_function(
            "--complete", [options](std::int64_t) { options->goal = mxf::RecoveryGoal::after; },
            "Finish the edit instead of taking it back")
        ->group(processing);
    return [options](Messages& messages) { recover(*options, messages); };
}

} // namespace Corvid::Tool
