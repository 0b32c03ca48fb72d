#include "tools/corvid/get/AnswerText.h"

#include "host/metadata/Names.h"
#include "tools/corvid/terminal/Lines.h"

#include <nlohmann/json.hpp>

namespace Corvid::Tool {

namespace {

using Json = nlohmann::ordered_json;

Json toJson(const Answer& answer, const Metadata::PartitionDictionary& tags) {
    Json json = Json::object();
    if (answer.place) {
        const auto& [set, element, item] = *answer.place;
        json["set"] = Metadata::className(*set);
        if (set->hasInstanceUID()) {
            json["instanceUID"] = Platform::toUtf8(set->instanceUID().toString());
        }
        if (element != nullptr) {
            json["property"] = Metadata::propertyName(tags, *element);
            json["position"] = answer.position + 1;
        }
    }
    json["value"] = answer.text;
    return json;
}

} // namespace

std::string answerLines(const AnswerTable& table, const std::string& front, char end) {
    std::string lines;
    for (const Answers& answers : table) {
        for (const Answer& answer : answers) {
            lines += front + answer.text + end;
        }
    }
    return lines;
}

std::string csvLine(const std::vector<std::string>& cells, bool isForSpreadsheet) {
    std::string line;
    for (const std::string& each : cells) {
        const bool isFormula = isForSpreadsheet && !each.empty() &&
                               std::string_view("=+-@\t\r").find(each[0]) != std::string::npos;
        const std::string cell = (isFormula ? "'" : "") + each;
        line += &each == &cells.front() ? "" : ",";
        // An empty line would be no row.
        const bool isWholeRow = cells.size() == 1 && cell.empty();
        if (!isWholeRow && cell.find_first_of(",\"\r\n") == std::string::npos) {
            line += cell;
            continue;
        }
        line += '"';
        for (const char c : cell) {
            line += c == '"' ? "\"\"" : std::string(1, c);
        }
        line += '"';
    }
    return line + "\r\n";
}

std::vector<std::string> cellsOf(const AnswerTable& table) {
    std::vector<std::string> cells;
    cells.reserve(table.size());
    for (const Answers& answers : table) {
        std::string cell;
        for (const Answer& answer : answers) {
            cell += (&answer == &answers.front() ? "" : "; ") + answer.text;
        }
        cells.push_back(std::move(cell));
    }
    return cells;
}

Json answerJson(const std::string& file, const std::vector<Question>& questions,
                const AnswerTable& table, const Metadata::PartitionDictionary& tags) {
    Json json{{"file", file}, {"answers", Json::array()}};
    for (std::size_t i = 0; i != questions.size(); ++i) {
        Json values = Json::array();
        for (const Answer& answer : table[i]) {
            values.push_back(toJson(answer, tags));
        }
        json["answers"].push_back({{questions[i].path ? "path" : "field", questions[i].text},
                                   {"values", std::move(values)}});
    }
    return json;
}

} // namespace Corvid::Tool
