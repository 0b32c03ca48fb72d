#include "tools/corvid/Get.h"

#include "editing/values/ValueText.h"
#include "host/metadata/Names.h"
#include "inspection/query/Query.h"
#include "tools/corvid/ExitStatus.h"
#include "tools/corvid/input/Paths.h"
#include "tools/corvid/output/OpenOutput.h"
#include "tools/corvid/output/Output.h"
#include "tools/corvid/reports/JsonText.h"
#include "tools/corvid/terminal/Messages.h"
#include "tools/corvid/terminal/Printable.h"

#include <nlohmann/json.hpp>

namespace Corvid::Tool {

namespace {

using Json = nlohmann::ordered_json;
using Inspection::Place;

/// What one path leads to.
struct Answer {
    const Inspection::Path& path;
    std::vector<std::pair<Place, std::vector<std::string>>> values;
};

bool isEmpty(const Answer& answer) {
    return std::all_of(answer.values.begin(), answer.values.end(),
                       [](const auto& each) { return each.second.empty(); });
}

/// Programs get the values as they are, people on a terminal so that they can't drive it.
void printLines(const std::vector<Answer>& answers) {
    const auto output = Output::open("-");
    std::string lines;
    for (const Answer& answer : answers) {
        for (const auto& [place, texts] : answer.values) {
            for (const std::string& text : texts) {
                lines += (output->isTerminal() ? printable(text) : text) + "\n";
            }
        }
    }
    output->write(reinterpret_cast<const unsigned char*>(lines.data()), lines.size());
    output->commit();
}

Json toJson(const Answer& answer, const Metadata::PartitionDictionary& tags) {
    Json values = Json::array();
    for (const auto& [place, texts] : answer.values) {
        for (std::size_t i = 0; i != texts.size(); ++i) {
            Json json{{"set", Metadata::className(*place.set)}};
            if (place.set->hasInstanceUID()) {
                json["instanceUID"] = Platform::toUtf8(place.set->instanceUID().toString());
            }
            if (place.element != nullptr) {
                json["property"] = Metadata::propertyName(tags, *place.element);
                json["position"] = place.item.value_or(i) + 1;
            }
            json["value"] = texts[i];
            values.push_back(std::move(json));
        }
    }
    return {{"path", answer.path.text}, {"values", std::move(values)}};
}

} // namespace

void get(const GetOptions& options, Messages& messages) {
    messages.setFile(options.clip.path);
    protectInputs(inputsOf({options.clip.path}, options.clip.dictionaries));
    const auto dictionary = loadDictionary(options.clip.dictionaries);
    const auto paths = parsePaths(options.paths, *dictionary);
    mxf::File file(options.clip.path, dictionary, messages);
    const mxf::HeaderMetadata header = readMetadata(file, options.clip, messages);
    Inspection::Query query(*header.metadata, Editing::valueText);
    std::vector<Answer> answers;
    for (const Inspection::Path& path : paths) {
        answers.push_back({path, {}});
        for (const Place& place : query.find(path)) {
            answers.back().values.emplace_back(place, textsOf(place, Editing::valueText));
        }
    }
    messages.flush();
    if (options.json) {
        Json json{{"file", messages.file()}, {"answers", Json::array()}};
        for (const Answer& answer : answers) {
            json["answers"].push_back(toJson(answer, header.metadata->partitionDictionary()));
        }
        printText(jsonText(json) + "\n");
    } else {
        printLines(answers);
    }
    bool isAnswered = true;
    for (const Answer& answer : answers) {
        if (isEmpty(answer)) {
            messages.error(answer.path.text + ": no value");
            isAnswered = false;
        }
    }
    refuseWarnings(options.warningsAsErrors, messages);
    if (!isAnswered) {
        throw EndedWith{exitRefused};
    }
}

} // namespace Corvid::Tool
