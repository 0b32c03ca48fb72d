#include "tools/corvid/Check.h"
#include "tools/corvid/DictionaryCommand.h"
#include "tools/corvid/Diff.h"
#include "tools/corvid/Get.h"
#include "tools/corvid/Info.h"
#include "tools/corvid/Report.h"
#include "tools/corvid/arguments/SharedArguments.h"
#include "tools/corvid/arguments/Verbs.h"

#include <memory>

namespace Corvid::Tool {

Work declareInfo(CLI::App& verb, bool colours) {
    const auto options = std::make_shared<InfoOptions>();
    options->text.colours = colours;
    declareFiles(verb, options->batch, "MXF files to read; - is standard input");
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
    declareMany(verb, options->batch);
    return [options](Messages& messages) { info(*options, messages); };
}

Work declareGet(CLI::App& verb) {
    const auto options = std::make_shared<GetOptions>();
    const auto others = std::make_shared<std::vector<std::string>>();
    const auto first = std::make_shared<std::string>();
    verb.add_option("CLIP.mxf", *first, "MXF file to read; - is standard input")
        ->type_name("CLIP.mxf")
        ->group(input);
    verb.add_option("QUERY", *others,
                    "Names of sets and properties to the value, MaterialPackage/PackageName or "
                    "TimelineTrack[TrackID=2]/TrackName, or a field such as @title; with -q more "
                    "MXF files")
        ->type_name("QUERY")
        ->group(input);
    verb.add_option("-q,--query", options->questions,
                    "What to print; can be repeated. All other arguments are MXF files then")
        ->allow_extra_args(false)
        ->type_name("QUERY")
        ->group(input);
    verb.add_option("--if", options->requirements,
                    "Ask only files that have a value there, or for which QUERY=VALUE or "
                    "QUERY!=VALUE holds; can be repeated")
        ->allow_extra_args(false)
        ->type_name("CONDITION")
        ->group(input);
    declareReading(verb, options->clip);
    declareStrictness(verb, options->warningsAsErrors, "Exit with status 1 if there are warnings");
    const auto addForm = [&](const char* name, GetOptions::Form form, const char* help) {
        return verb
            .add_flag_callback(
                name, [options, form] { options->form = form; }, help)
            ->group(output);
    };
    auto* const csv = addForm("--csv", GetOptions::Form::csv,
                              "Print CSV (RFC 4180): names, then a line for each file");
    auto* const sheet = addForm("--spreadsheet", GetOptions::Form::spreadsheet,
                                "The same, so that a spreadsheet takes no value for a formula");
    auto* const json = addForm("--json", GetOptions::Form::json,
                               "Print JSON for programs; of several files a line for each");
    auto* const names = verb.add_flag("--with-filename", options->withFilename,
                                      "Print the name of the file in front of each value")
                            ->group(output);
    auto* const zeros = verb.add_flag("-0,--null", options->endsWithZeros,
                                      "End each value with a zero instead of a line break; so do "
                                      "names in the list of --files-from")
                            ->group(output);
    csv->excludes(sheet, json, names, zeros);
    sheet->excludes(json, names, zeros);
    json->excludes(names, zeros);
    declareBatch(verb, options->batch);
    verb.parse_complete_callback([options, first, others, &verb] {
        BatchOptions& batch = options->batch;
        batch.listHasZeros = options->endsWithZeros;
        if (!first->empty()) {
            batch.files = {*first};
        }
        auto& rest = options->questions.empty() ? options->questions : batch.files;
        rest.insert(rest.end(), others->begin(), others->end());
        completeBatch(verb, batch);
        if (options->questions.empty()) {
            throw CLI::RequiredError("QUERY");
        }
        for (const std::string& question : options->questions) {
            batch.fingerprint += question + '\0';
        }
    });
    return [options](Messages& messages) { get(*options, messages); };
}

Work declareReport(CLI::App& verb) {
    const auto options = std::make_shared<ReportOptions>();
    declareFiles(verb, options->batch,
                 "MXF file to read; - is standard input. Of two the page is about the second and "
                 "shows what differs from the first");
    declareReading(verb, options->clip);
    verb.add_option_function<std::string>(
            "--raw",
            [options](const std::string& which) {
                options->raw = which == "all" ? RawBytes::all : RawBytes::automatic;
            },
            "auto: of more than 10,000 sets or 32 MiB the first 64 bytes of each value; "
            "all: all bytes")
        ->type_name("auto|all")
        ->check(oneOf({"auto", "all"}))
        ->default_str("auto")
        ->group(processing);
    declareStrictness(verb, options->warningsAsErrors,
                      "Write nothing and exit with status 1 if there are warnings");
    verb.add_option("-o,--output", options->output, "File to write; - is standard output")
        ->type_name("FILE")
        ->check(someName())
        ->capture_default_str()
        ->group(output);
    declareForce(verb, options->force, "Write also where an MXF file is, which is lost");
    declareMany(verb, options->batch);
    return [options](Messages& messages) { report(*options, messages); };
}

Work declareDiff(CLI::App& verb) {
    const auto options = std::make_shared<DiffOptions>();
    const auto files = std::make_shared<std::vector<std::string>>();
    verb.add_option("BEFORE", options->before, "MXF file or document; - is standard input")
        ->type_name("BEFORE")
        ->group(input);
    verb.add_option("AFTER", *files, "Another one, of whichever kind; with --against more files")
        ->type_name("AFTER")
        ->group(input);
    verb.add_option("--against", options->folder,
                    "Compare each file with the one of the same path in a folder, or with the "
                    "document that to-xml --output-dir has written there")
        ->type_name("DIR")
        ->group(input);
    declareReading(verb, options->clips);
    verb.add_flag("--json", options->json, "Print JSON for programs")->group(output);
    declareZeros(verb, options->batch);
    declareBatch(verb, options->batch);
    verb.parse_complete_callback([options, files, &verb] {
        BatchOptions& batch = options->batch;
        if (!options->folder.empty()) {
            if (!options->before.empty()) {
                batch.files = {options->before};
            }
            batch.files.insert(batch.files.end(), files->begin(), files->end());
            completeBatch(verb, batch);
        } else if (options->before.empty()) {
            throw CLI::RequiredError("BEFORE");
        } else if (files->empty()) {
            throw CLI::RequiredError("AFTER");
        } else if (files->size() > 1 || batch.isAskedFor()) {
            throw CLI::RequiredError("--against");
        } else {
            options->after = files->front();
        }
    });
    return [options](Messages& messages) { diff(*options, messages); };
}

Work declareCheck(CLI::App& verb, bool colours) {
    const auto options = std::make_shared<CheckOptions>();
    options->colours = colours;
    declareFiles(verb, options->batch, "MXF files to check; - is standard input");
    declareReading(verb, options->clip);
    declareStrictness(verb, options->warningsAsErrors, "Exit with status 1 if there are warnings");
    verb.add_flag("--all", options->all, "List up to 10000 differences of a kind in a file")
        ->group(output);
    verb.add_flag("--json", options->json, "Print JSON for programs")->group(output);
    declareMany(verb, options->batch);
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

} // namespace Corvid::Tool
