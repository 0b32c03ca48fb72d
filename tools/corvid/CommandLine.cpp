#include "tools/corvid/CommandLine.h"

#include "tools/corvid/Apply.h"
#include "tools/corvid/Check.h"
#include "tools/corvid/DictionaryCommand.h"
#include "tools/corvid/Diff.h"
#include "tools/corvid/FromXml.h"
#include "tools/corvid/Get.h"
#include "tools/corvid/Info.h"
#include "tools/corvid/Recover.h"
#include "tools/corvid/Schema.h"
#include "tools/corvid/Set.h"
#include "tools/corvid/ToXml.h"
#include "tools/corvid/terminal/HelpFormatter.h"
#include "tools/corvid/terminal/UsageError.h"
#include "tools/corvid/terminal/UsageHelp.h"
#include "tools/corvid/xml/XmlModule.h"

#include <algorithm>
#include <memory>
#include <sstream>

namespace Corvid::Tool {

namespace {

constexpr const char* input = "Input";
constexpr const char* processing = "Processing";
constexpr const char* output = "Output";

/// Gives a verb its options; they live as long as the work that is returned.
using Work = std::function<void(Messages&)>;

/// Unlike the library's own, it adds nothing to the help: the type's name shows the values.
CLI::Validator oneOf(std::vector<std::string> values) {
    return CLI::Validator(
        [values = std::move(values)](const std::string& text) {
            const bool isOne = std::find(values.begin(), values.end(), text) != values.end();
            return isOne ? std::string()
                         : "expected " + CLI::detail::join(values, " or ") + ", not '" + text + "'";
        },
        "");
}

CLI::Validator numberFromOne(std::uint32_t greatest) {
    return CLI::Validator(
        [greatest](std::string& text) {
            return CLI::Range(std::uint32_t{1}, greatest)(text).empty()
                       ? std::string()
                       : "expected a number from 1 to " + std::to_string(greatest) + ", not '" +
                             text + "'";
        },
        "");
}

void declareDictionaries(CLI::App& verb, DictionaryChoice& choice) {
    verb.add_option("--dictionary", choice.files,
                    "Definitions of sets and properties beside the built-in ones; may be repeated")
        ->type_name("FILE")
        ->allow_extra_args(false)
        ->group(input);
    verb.add_flag("--no-vendor-dictionaries", choice.registeredOnly,
                  "Know the sets and properties of the SMPTE registers alone, not what else is in "
                  "use")
        ->group(input);
}

/// The options of verbs that read MXF files, one or many.
void declareReading(CLI::App& verb, ClipOptions& options) {
    declareDictionaries(verb, options.dictionaries);
    verb.add_option("--partition", options.partition,
                    "Partition to read the metadata of: auto (the last complete copy), header, "
                    "footer, or the "
                    "number of a partition, from 0")
        ->type_name("auto|header|footer|N")
        ->check(
            [](const std::string& text) {
                return isPartitionChoice(text)
                           ? std::string()
                           : "expected auto, header, footer or a number, not '" + text + "'";
            },
            "")
        ->capture_default_str()
        ->group(input);
}

void declareClip(CLI::App& verb, ClipOptions& options) {
    verb.add_option("CLIP.mxf", options.path, "MXF file to read; - is standard input")
        ->required()
        ->type_name("CLIP.mxf")
        ->group(input);
    declareReading(verb, options);
}

void declareForce(CLI::App& verb, bool& force, const char* what) {
    verb.add_flag("--force", force, what)->group(output);
}

void declareStrictness(CLI::App& verb, bool& wanted, const char* what) {
    verb.add_flag("--warnings-as-errors", wanted, what)->group(processing);
}

/// Loads the module when there is something to validate, and not before.
void validateInModule(const unsigned char* bytes, std::size_t length,
                      const MetaMetadata::Dictionary& dictionary, Messages& messages) {
    xmlModule().validate(bytes, length, dictionary, messages);
}

/// The same where a document is read leniently.
Editing::DocumentMetadata readLenientlyInModule(
    DataIO::DataSource& source, const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary,
    Editing::DocumentIdentifiers identifiers) {
    return xmlModule().readLeniently(source, dictionary, identifiers);
}

Work declareToXml(CLI::App& verb) {
    using XMLUtils::EncodingType;
    const auto options = std::make_shared<ToXmlOptions>();
    declareClip(verb, options->clip);
    verb.add_option_function<std::string>(
            "--references",
            [options](const std::string& how) { options->referencesAsValues = how == "values"; },
            "links: sets are side by side and refer to each other; values: a set is inside "
            "the property that owns it")
        ->type_name("links|values")
        ->check(oneOf({"links", "values"}))
        ->default_str("links")
        ->group(processing);
    verb.add_flag("--structural-only", options->structuralOnly,
                  "Leave out sets that are not structural metadata")
        ->group(processing);
    verb.add_option("--start", options->start, "Begin with this set instead of the Preface")
        ->type_name("INSTANCEUID")
        ->group(processing);
    verb.add_flag("--replace-invalid", options->replaceInvalid,
                  "Write U+FFFD for characters that XML can't hold, and say where, instead of "
                  "refusing them")
        ->group(processing);
    verb.add_flag_function(
            "--validate", [options](std::int64_t) { options->validate = validateInModule; },
            "Check the document against its schema before it is written")
        ->group(processing);
    declareStrictness(verb, options->warningsAsErrors,
                      "Write nothing and exit with status 1 if there are warnings");
    verb.add_option("-o,--output", options->output, "File to write; - is standard output")
        ->type_name("FILE")
        ->capture_default_str()
        ->group(output);
    declareForce(verb, options->force, "Write also where an MXF file is, which is lost");
    verb.add_option_function<std::string>(
            "--encoding",
            [options](const std::string& name) {
                options->encoding = name == "utf-16" ? EncodingType::utf16 : EncodingType::utf8;
            },
            "Encoding of the text")
        ->type_name("utf-8|utf-16")
        ->check(oneOf({"utf-8", "utf-16"}))
        ->default_str("utf-8")
        ->group(output);
    verb.add_flag("--compact", options->compact, "No line breaks and no indentation")
        ->group(output);
    return [options](Messages& messages) { toXml(*options, messages); };
}

Work declareFromXml(CLI::App& verb) {
    const auto options = std::make_shared<FromXmlOptions>();
    verb.add_option("DOC.xml", options->path, "Document to read; - is standard input")
        ->required()
        ->type_name("DOC.xml")
        ->group(input);
    declareDictionaries(verb, options->dictionaries);
    verb.add_flag_function(
            "--new-identifiers",
            [options](std::int64_t) { options->identifiers = Editing::DocumentIdentifiers::fresh; },
            "Give every set a new InstanceUID instead of the one in the document")
        ->group(processing);
    verb.add_flag_function(
            "--lenient", [options](std::int64_t) { options->lenient = readLenientlyInModule; },
            "Read what can be read, as the library does, instead of refusing a document "
            "with mistakes")
        ->group(processing);
    declareStrictness(verb, options->warningsAsErrors,
                      "Write nothing and exit with status 1 if there are warnings");
    verb.add_option("-o,--output", options->output, "File to write; - is standard output")
        ->required()
        ->type_name("FILE")
        ->group(output);
    declareForce(
        verb, options->force,
        "Write also where an MXF file with more than a header partition is, which is lost");
    verb.add_option("--kag", options->kagSize,
                    "KAG size in bytes: the metadata begins and ends at multiples of it")
        ->type_name("N")
        ->check(numberFromOne(greatestKagSize))
        ->capture_default_str()
        ->group(output);
    return [options](Messages& messages) { fromXml(*options, messages); };
}

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
        ->check(CLI::Range(std::uint64_t{0}, Editing::greatestReserve))
        ->capture_default_str()
        ->group(processing);
    declareStrictness(verb, options->warningsAsErrors,
                      "Write nothing and exit with status 1 if there are warnings");
    verb.add_option("-o,--output", options->target.newFile, "File to write the edited clip to")
        ->type_name("FILE")
        ->group(output);
    verb.add_flag("--in-place", options->inPlace, "Change the clip itself")->group(output);
    verb.add_flag("--dry-run", options->dryRun,
                  "Show what would change and how it would be written; exit with status 1 if "
                  "something would")
        ->group(output);
    verb.add_flag("--json", options->json, "Print JSON for programs")->group(output);
    verb.add_option("--log", options->log, "File for a record of the edit in JSON")
        ->type_name("FILE")
        ->group(output);
    verb.add_flag("--hash", options->hashesEssence,
                  "Print the hash of essence and index tables after the edit; reads the whole file")
        ->group(output);
    verb.add_option("--undo", options->target.undo,
                    "File for what takes the edit back: corvid recover CLIP.mxf --from FILE")
        ->type_name("FILE")
        ->group(output);
    verb.add_option("--recovery-dir", options->target.recoveryFolder,
                    "Folder for the recovery file while the clip changes, instead of its own")
        ->type_name("DIR")
        ->check(CLI::ExistingDirectory)
        ->group(output);
    verb.add_flag("--break-links", options->target.breaksLinks,
                  "Replace the clip also where it has other hard links, which keep the old file")
        ->group(output);
    verb.add_flag("--preserve-times", options->target.preservesTimes,
                  "Keep the clip's time of modification")
        ->group(output);
}

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
        ->group(input);
    verb.add_flag_function(
            "--complete", [options](std::int64_t) { options->goal = mxf::RecoveryGoal::after; },
            "Finish the edit instead of taking it back")
        ->group(processing);
    return [options](Messages& messages) { recover(*options, messages); };
}

Work declareInfo(CLI::App& verb, bool colours) {
    const auto options = std::make_shared<InfoOptions>();
    options->text.colours = colours;
    verb.add_option("CLIP.mxf", options->files, "MXF files to read; - is standard input")
        ->required()
        ->type_name("CLIP.mxf")
        ->group(input);
    declareReading(verb, options->clip);
    declareStrictness(verb, options->warningsAsErrors, "Exit with status 1 if there are warnings");
    verb.add_flag("--warnings", options->text.warnings,
                  "List the warnings instead of counting them")
        ->group(output);
    verb.add_flag("--labels", options->text.labels, "Show the labels of codings and containers")
        ->group(output);
    verb.add_flag("--all", options->text.all,
                  "Show everything, also partitions, packages, tracks, descriptors and sets")
        ->group(output);
    verb.add_flag("--json", options->json,
                  "Print JSON for programs; of several files a line for each")
        ->group(output);
    return [options](Messages& messages) { info(*options, messages); };
}

Work declareGet(CLI::App& verb) {
    const auto options = std::make_shared<GetOptions>();
    declareClip(verb, options->clip);
    verb.add_option("PATH", options->paths,
                    "Names of sets and properties to the value: MaterialPackage/PackageName, "
                    "TimelineTrack[TrackID=2]/TrackName")
        ->required()
        ->type_name("PATH")
        ->group(input);
    declareStrictness(verb, options->warningsAsErrors, "Exit with status 1 if there are warnings");
    verb.add_flag("--json", options->json, "Print JSON for programs")->group(output);
    return [options](Messages& messages) { get(*options, messages); };
}

Work declareDiff(CLI::App& verb) {
    const auto options = std::make_shared<DiffOptions>();
    verb.add_option("BEFORE", options->before, "MXF file or document; - is standard input")
        ->required()
        ->type_name("BEFORE")
        ->group(input);
    verb.add_option("AFTER", options->after, "Another one, of whichever kind")
        ->required()
        ->type_name("AFTER")
        ->group(input);
    declareReading(verb, options->clips);
    verb.add_flag("--json", options->json, "Print JSON for programs")->group(output);
    return [options](Messages& messages) { diff(*options, messages); };
}

Work declareSchema(CLI::App& verb) {
    const auto options = std::make_shared<SchemaOptions>();
    declareDictionaries(verb, options->dictionaries);
    verb.add_option("-o,--output", options->folder,
                    "Folder for the schemas, one file per namespace")
        ->type_name("DIR")
        ->capture_default_str()
        ->group(output);
    declareForce(verb, options->force, "Write also where an MXF file is, which is lost");
    return [options](Messages& messages) { xmlModule().schema(*options, messages); };
}

Work declareCheck(CLI::App& verb, bool colours) {
    const auto options = std::make_shared<CheckOptions>();
    options->colours = colours;
    verb.add_option("CLIP.mxf", options->files, "MXF files to check; - is standard input")
        ->required()
        ->type_name("CLIP.mxf")
        ->group(input);
    declareReading(verb, options->clip);
    declareStrictness(verb, options->warningsAsErrors, "Exit with status 1 if there are warnings");
    verb.add_flag("--all", options->all, "List up to 10000 differences of a kind in a file")
        ->group(output);
    verb.add_flag("--json", options->json, "Print JSON for programs")->group(output);
    return [options](Messages& messages) { check(*options, messages); };
}

Work declareDictionary(CLI::App& verb, bool colours) {
    const auto options = std::make_shared<DictionaryOptions>();
    options->colours = colours;
    verb.add_option("LABEL-OR-NAME", options->wanted,
                    "Label or key in any form, local tag, or name of a set, property, type, member "
                    "or label, or part of it")
        ->required()
        ->type_name("LABEL-OR-NAME")
        ->group(input);
    declareDictionaries(verb, options->dictionaries);
    verb.add_flag("--json", options->json, "Print JSON for programs")->group(output);
    return [options](Messages&) { dictionary(*options); };
}

} // namespace

Command parseCommandLine(int argc, const char* const* argv, bool colours) {
    CLI::App app("The header metadata of MXF files (SMPTE ST 377-1) as XML", "corvid");
    app.formatter(std::make_shared<HelpFormatter>());
    app.require_subcommand(0, 1);
    app.set_version_flag("-V,--version", "corvid " CORVID_VERSION, "Print the version and exit");
    app.set_help_flag("-h,--help", "Print this help and exit");
    app.footer("corvid help VERB shows the options of a verb. Exit status: 0 done, 1 data\n"
               "refused or different, 2 wrong command line, 3 file unreadable or unwritable.\n");

    Work chosen;
    const auto add = [&](const char* name, const char* what, const auto& declare) {
        CLI::App* const verb = app.add_subcommand(name, what)->group("Verbs");
        Work work = declare(*verb);
        verb->callback([&chosen, work = std::move(work)] { chosen = work; });
    };
    add("to-xml", "Write the header metadata of an MXF file as XML", declareToXml);
    add("from-xml", "Write a document as an MXF header partition", declareFromXml);
    add("apply", "Make the metadata of a file what a document says", declareApply);
    add("set", "Change single values of an MXF file", declareSet);
    add("recover", "Take back or finish an edit that was interrupted", declareRecover);
    add("info", "Show what is in an MXF file at a glance",
        [colours](CLI::App& verb) { return declareInfo(verb, colours); });
    add("get", "Print single values of an MXF file", declareGet);
    add("diff", "Show what differs between two files or documents", declareDiff);
    add("check", "Take MXF files to XML and back, show what differs",
        [colours](CLI::App& verb) { return declareCheck(verb, colours); });
    add("schema", "Write the XML Schema of the documents", declareSchema);
    add("dictionary", "Explain a label, local tag, set, property or type",
        [colours](CLI::App& verb) { return declareDictionary(verb, colours); });
    std::string explained;
    const CLI::App* const help = declareHelp(app, explained);

    try {
        checkVerb(app, argc, argv);
        app.parse(argc, argv);
    } catch (const CLI::ParseError& end) {
        std::ostringstream text;
        std::ostringstream error;
        if (app.exit(end, text, error) != 0) {
            throw UsageError{usageText(app, end)};
        }
        return {{}, text.str()};
    }
    if (help->parsed()) {
        return {{}, helpOf(app, explained)};
    }
    if (!chosen) {
        throw UsageError{"a verb is missing", "\n" + app.help()};
    }
    return {std::move(chosen), {}};
}

} // namespace Corvid::Tool
