#include "tools/corvid/CommandLine.h"

#include "Corvid/Version.h"
#include "tools/corvid/ExitStatus.h"
#include "tools/corvid/arguments/Describe.h"
#include "tools/corvid/arguments/Verbs.h"
#include "tools/corvid/terminal/HelpFormatter.h"
#include "tools/corvid/terminal/Lines.h"
#include "tools/corvid/terminal/UsageError.h"
#include "tools/corvid/terminal/UsageHelp.h"

#include <algorithm>
#include <memory>
#include <sstream>
#include <string_view>

namespace Corvid::Tool {

namespace {

std::string footer() {
    std::string text = "corvid help VERB shows the options of a verb. Exit status:";
    const char* between = " ";
    for (const ExitMeaning& each : exitMeanings) {
        text += between + std::to_string(each.status) + " " + each.meaning;
        between = ", ";
    }
    return wrappedWords(text + ".", 0);
}

} // namespace

Command parseCommandLine(int argc, const char* const* argv, bool colours) {
    CLI::App app("The header metadata of MXF files (SMPTE ST 377-1) as XML", "corvid");
    app.formatter(std::make_shared<HelpFormatter>());
    app.require_subcommand(0, 1);
    app.set_version_flag("-V,--version", "corvid " CORVID_VERSION, "Print the version and exit");
    app.set_help_flag("-h,--help", "Print this help and exit");
    app.footer(footer());
    const CLI::Option* const described =
        app.add_flag("--describe", "Print the verbs and their options as JSON and exit")->group("");

    // To declare the options of all verbs takes as long as to read a small file.
    const auto mayNeed = [&](std::string_view verb) {
        return std::any_of(argv + 1, argv + argc, [verb](std::string_view argument) {
            return argument == verb || argument == "--describe";
        });
    };
    Work chosen;
    const auto add = [&](const char* name, const char* what, const auto& declare) {
        CLI::App* const verb = app.add_subcommand(name, what)->group("Verbs");
        if (!mayNeed(name)) {
            return;
        }
        Work work = declare(*verb);
        verb->callback([&chosen, work = std::move(work)] { chosen = work; });
    };
    add("to-xml", "Write the header metadata of an MXF file as XML", declareToXml);
    add("to-json", "Write the header metadata of an MXF file as JSON", declareToJson);
    add("from-xml", "Write a document as an MXF header partition", declareFromXml);
    add("apply", "Make the metadata of a file what a document says", declareApply);
    add("set", "Change single values of an MXF file", declareSet);
    add("recover", "Take back or finish an edit that was interrupted", declareRecover);
    add("info", "Show what is in an MXF file at a glance",
        [colours](CLI::App& verb) { return declareInfo(verb, colours); });
    add("report", "Write what is in an MXF file as a web page", declareReport);
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
    if (described->count() != 0) {
        return {{}, describe(app)};
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
