#include "tools/corvid/dictionary/Explanation.h"

#include "tools/corvid/terminal/Lines.h"
#include "tools/corvid/terminal/Printable.h"
#include "tools/corvid/terminal/Style.h"
#include "tools/corvid/terminal/Table.h"

#include <algorithm>
#include <cctype>
#include <nlohmann/json.hpp>

namespace Corvid::Tool {

namespace {

using Json = nlohmann::ordered_json;

/// Of a list of names in one line; JSON has them all.
constexpr std::size_t mostNames = 12;

/// "localTag" becomes "Local tag".
std::string heading(const std::string& key) {
    std::string text;
    for (const char c : key) {
        const auto lower = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        text += lower == c ? std::string(1, c) : std::string{' ', lower};
    }
    text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
    return text;
}

bool isTable(const Json& value) {
    return value.is_array() && !value.empty() && value.front().is_object();
}

std::string listOf(std::vector<std::string> texts, const char* between) {
    if (texts.size() <= mostNames) {
        return joined(texts, between);
    }
    const std::string others = std::to_string(texts.size() - mostNames);
    texts.resize(mostNames);
    return joined(texts, between) + " and " + others + " more";
}

/// A value on one line; empty where nothing is known.
/// @param between  the items of a list.
std::string lineOf(const Json& value, const char* between = ", ") {
    std::vector<std::string> texts;
    if (value.is_string()) {
        return printable(value.get<std::string>());
    }
    if (value.is_boolean()) {
        return value.get<bool>() ? "yes" : "no";
    }
    if (value.is_array()) {
        std::transform(value.begin(), value.end(), std::back_inserter(texts),
                       [](const Json& item) { return lineOf(item); });
    } else if (value.is_object()) {
        for (const auto& [name, about] : value.items()) {
            texts.push_back(printable(name) + " (" + lineOf(about) + ")");
        }
    } else if (!value.is_null()) {
        return value.dump();
    }
    return listOf(texts, between);
}

std::string table(const std::string& key, const Json& rows, const Style& style) {
    Table table(2);
    std::vector<std::string> headings;
    for (const auto& column : rows.front().items()) {
        headings.push_back(heading(column.key()));
    }
    table.add(headings);
    for (const Json& row : rows) {
        std::vector<std::string> cells;
        std::transform(row.begin(), row.end(), std::back_inserter(cells),
                       [](const Json& cell) { return lineOf(cell); });
        table.add(cells);
    }
    return "\n" + style.heading + heading(key) + style.end + "\n" +
           table.toString(style.quiet, style.end);
}

} // namespace

std::string explanationText(const Json& explanation, bool colours) {
    const Style style(colours);
    Table facts(2);
    std::string tables;
    facts.add({});
    for (const auto& [key, value] : explanation.items()) {
        // "No" goes without saying here.
        const bool isUsual = key == "deprecated" && value == false;
        if (isTable(value)) {
            tables += table(key, value, style);
        } else if (key != "kind" && key != "name" && !isUsual) {
            const char* const between = key == "register" ? " > " : ", ";
            if (const std::string line = lineOf(value, between); !line.empty()) {
                facts.add({heading(key), line});
            }
        }
    }
    const auto name = explanation.at("name").get<std::string>();
    const auto kind = explanation.at("kind").get<std::string>();
    return style.heading + printable(name) + style.end + ", " + kind + facts.toString("", "") +
           tables;
}

} // namespace Corvid::Tool
