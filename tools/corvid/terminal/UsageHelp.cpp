#include "tools/corvid/terminal/UsageHelp.h"

#include "host/base/NearNames.h"
#include "tools/corvid/terminal/UsageError.h"

namespace Corvid::Tool {

namespace {

std::vector<CLI::App*> verbsOf(CLI::App& app) {
    return app.get_subcommands([](const CLI::App*) { return true; });
}

/// Null where there is none of that name.
const CLI::App* findVerb(CLI::App& app, const std::string& name) {
    for (const CLI::App* verb : verbsOf(app)) {
        if (verb->get_name() == name) {
            return verb;
        }
    }
    return nullptr;
}

/// "; did you mean 'check'?", or the alternative where no name is near.
std::string suggestion(const std::string& wanted, const std::vector<std::string>& names,
                       const std::string& otherwise) {
    Platform::NearNames near(wanted);
    for (const std::string& name : names) {
        near.offer(name);
    }
    const auto best = near.best();
    return "; " + (best.empty() ? otherwise : "did you mean '" + best.front() + "'?");
}

UsageError noVerb(CLI::App& app, const std::string& name) {
    std::vector<std::string> names;
    for (const CLI::App* verb : verbsOf(app)) {
        names.push_back(verb->get_name());
    }
    return {"no verb '" + name + "'" + suggestion(name, names, "corvid help lists the verbs")};
}

/// About the first argument that an application or a verb did not expect.
std::string unexpected(const CLI::App& app, const std::string& argument,
                       const std::string& seeHelp) {
    if (argument.size() < 2 || argument.front() != '-') {
        return "unexpected argument '" + argument + "'; " + seeHelp;
    }
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    const std::string name = argument.substr(0, argument.find('='));
    return "no option '" + name + "'" + suggestion(name, names, seeHelp);
}

/// About the first argument before the verb that only verbs may have.
std::string beforeTheVerb(const CLI::App& app, const CLI::App& verb, const std::string& argument) {
    const std::string name = argument.substr(0, argument.find('='));
    return &verb != &app && verb.get_option_no_throw(name) != nullptr
               ? "option '" + name + "' goes after the verb: corvid " + verb.get_name() + " " + name
               : unexpected(app, argument, "see corvid help");
}

} // namespace

CLI::App* declareHelp(CLI::App& app, std::string& wanted) {
    CLI::App* const help = app.add_subcommand("help", "Show this help, or that of a verb");
    help->group("Verbs");
    help->add_option("VERB", wanted, "Verb to explain")->type_name("VERB")->group("Input");
    return help;
}

std::string helpOf(CLI::App& app, const std::string& verb) {
    if (verb.empty()) {
        // help() of an application would delegate to the verb `help`, which has been parsed.
        return app.get_formatter()->make_help(&app, app.get_name(), CLI::AppFormatMode::Normal);
    }
    const CLI::App* const found = findVerb(app, verb);
    if (found == nullptr) {
        throw noVerb(app, verb);
    }
    return found->help(app.get_name());
}

void checkVerb(CLI::App& app, int argc, const char* const* argv) {
    for (int i = 1; i != argc; ++i) {
        const std::string argument = argv[i];
        if (!argument.empty() && argument.front() == '-') {
            continue;
        }
        if (findVerb(app, argument) == nullptr) {
            throw noVerb(app, argument);
        }
        return;
    }
}

std::string usageText(CLI::App& app, const CLI::ParseError& error) {
    const auto chosen = app.get_subcommands();
    const CLI::App& verb = chosen.empty() ? app : *chosen.back();
    const std::string where = chosen.empty() ? "" : verb.get_name() + ": ";
    const std::string seeHelp = "see corvid help" + (chosen.empty() ? "" : " " + verb.get_name());
    if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) {
        if (const auto before = app.remaining(); !before.empty()) {
            return beforeTheVerb(app, verb, before.front());
        }
        const auto extra = app.remaining(true);
        if (!extra.empty()) {
            return where + unexpected(verb, extra.front(), seeHelp);
        }
    }
    std::string text = error.what();
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) {
        const std::string name = text.substr(0, text.find(": "));
        const CLI::Option* const option = verb.get_option_no_throw(name);
        const bool isRepeated = option != nullptr && option->count() > 1;
        text = name + (isRepeated ? " is there more than once" : " needs a value");
    }
    return where + text + "; " + seeHelp;
}

} // namespace Corvid::Tool
