#include "tools/corvid/terminal/HelpFormatter.h"

#include "tools/corvid/terminal/Lines.h"

namespace Corvid::Tool {

namespace {

constexpr std::size_t indent = 6;

} // namespace

std::string HelpFormatter::make_usage(const CLI::App* app, std::string name) const {
    const bool hasVerbs = !app->get_subcommands([](const CLI::App*) { return true; }).empty();
    std::string usage = "Usage: " + name + (hasVerbs ? " VERB [OPTION]..." : " [OPTION]...");
    for (const CLI::Option* option : app->get_options()) {
        usage += option->get_positional() ? " " + option->get_type_name() : "";
    }
    return usage + "\n\n";
}

std::string HelpFormatter::make_group(std::string group, bool isPositional,
                                      std::vector<const CLI::Option*> options) const {
    std::string text = group + ":\n";
    for (const CLI::Option* option : options) {
        text += make_option(option, isPositional);
    }
    return isPositional ? text + "\n" : text;
}

std::string HelpFormatter::make_option(const CLI::Option* option, bool isPositional) const {
    const bool hasValue = option->get_items_expected_max() != 0;
    std::string text = "  ";
    if (isPositional) {
        text += option->get_type_name();
    } else {
        std::string names;
        for (const auto& name : option->get_snames()) {
            names += (names.empty() ? "-" : ", -") + name;
        }
        for (const auto& name : option->get_lnames()) {
            names += (names.empty() ? "--" : ", --") + name;
        }
        text += names + (hasValue ? " " + option->get_type_name() : "");
    }
    const std::string standard = hasValue ? option->get_default_str() : "";
    return text + "\n" +
           wrappedWords(option->get_description() +
                            (standard.empty() ? "" : " (default: " + standard + ")"),
                        indent);
}

} // namespace Corvid::Tool
