#include "tools/corvid/arguments/Describe.h"

#include "tools/corvid/ExitStatus.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <nlohmann/json.hpp>

namespace Corvid::Tool {

namespace {

using Json = nlohmann::ordered_json;

bool isChoice(const std::string& word) {
    return std::none_of(word.begin(), word.end(),
                        [](char each) { return each == '.' || (each >= 'A' && each <= 'Z'); });
}

/// What may be there in place of an argument, by the name that the help gives it: values are in
/// lower case, with "|" between them, CLIP.mxf is a file with that suffix.
Json valuesOf(const std::string& argument) {
    Json values = Json::object();
    for (const std::string& word : CLI::detail::split(argument, '|')) {
        if (word == "FILE" || word == "BEFORE" || word == "AFTER") {
            values["files"].push_back("");
        } else if (word == "DIR") {
            values["folders"] = true;
        } else if (word == "VERB") {
            values["verbs"] = true;
        } else if (isChoice(word)) {
            values["choices"].push_back(word);
        } else if (const auto stop = word.rfind('.'); stop != std::string::npos) {
            values["files"].push_back(word.substr(stop + 1));
        }
    }
    return values;
}

Json describeOption(const CLI::Option& option) {
    const bool hasValue = option.get_items_expected_max() != 0;
    Json names = Json::array();
    for (const std::string& name : option.get_snames()) {
        names.push_back("-" + name);
    }
    for (const std::string& name : option.get_lnames()) {
        names.push_back("--" + name);
    }
    Json result{{"names", names},
                {"positional", option.get_positional()},
                {"required", option.get_required()},
                {"repeatable", option.get_items_expected_max() > 1},
                {"group", option.get_group()},
                {"description", option.get_description()}};
    if (hasValue) {
        result["argument"] = option.get_type_name();
        result["default"] = option.get_default_str();
        result["values"] = valuesOf(option.get_type_name());
    }
    return result;
}

Json describeOptions(const CLI::App& app) {
    Json options = Json::array();
    for (const CLI::Option* option : app.get_options()) {
        if (!option->get_group().empty()) {
            options.push_back(describeOption(*option));
        }
    }
    return {{"name", app.get_name()}, {"description", app.get_description()}, {"options", options}};
}

} // namespace

std::string describe(const CLI::App& app) {
    Json result = describeOptions(app);
    for (const CLI::App* verb : app.get_subcommands([](const CLI::App*) { return true; })) {
        result["verbs"].push_back(describeOptions(*verb));
    }
    for (const ExitMeaning& each : exitMeanings) {
        result["exitStatuses"].push_back({{"status", each.status}, {"meaning", each.meaning}});
    }
    return result.dump(2) + "\n";
}

} // namespace Corvid::Tool
