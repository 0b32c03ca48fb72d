#include "tools/corvid/Check.h"
#include "tools/corvid/DictionaryCommand.h"
#include "tools/corvid/Diff.h"
#include "tools/corvid/Get.h"
#include "tools/corvid/Info.h"
#include "tools/corvid/arguments/SharedArguments.h"
#include "tools/corvid/arguments/Verbs.h"

#include <memory>

namespace Corvid::Tool {

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

} // namespace Corvid::Tool
