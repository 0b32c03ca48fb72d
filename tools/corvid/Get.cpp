#include "tools/corvid/Get.h"

#include "tools/corvid/ExitStatus.h"
#include "tools/corvid/batch/CountedSource.h"
#include "tools/corvid/batch/ReadFiles.h"
#include "tools/corvid/get/AnswerText.h"
#include "tools/corvid/output/Output.h"
#include "tools/corvid/reports/JsonText.h"
#include "tools/corvid/terminal/Messages.h"
#include "tools/corvid/terminal/Printable.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>

namespace Corvid::Tool {

namespace {

using Form = GetOptions::Form;
using Dictionary = Templates::SharedPtr<MetaMetadata::Dictionary>;

/// Programs get the values as they are, people on a terminal so that they can't drive it.
void print(Output& output, const std::string& text) {
    if (!output.isTerminal()) {
        writeWhole(output, text);
        return;
    }
    std::string shown;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        shown += printable(text.substr(at, end - at)) + "\n";
        at = end + 1;
    }
    writeWhole(output, shown);
}

class Asking {
public:
    Asking(const GetOptions& options, const Dictionary& dictionary) : options_(options) {
        for (const std::string& text : options.questions) {
            questions_.push_back(parseQuery(text, *dictionary));
        }
        for (const std::string& text : options.requirements) {
            requirements_.push_back(parseRequirement(text, *dictionary));
        }
    }

    /// The names of the columns of a table, or nothing.
    std::string head() const {
        return isTable() ? csvLine(options_.questions, options_.form == Form::spreadsheet) : "";
    }

    /// @param head  comes in front of the answers.
    void ask(const Dictionary& dictionary, const std::string& head, FileTask& task) const {
        Messages& messages = task.messages;
        ClipOptions clip = options_.clip;
        clip.path = task.path;
        mxf::File file(openCounted(clip, task), dictionary, messages);
        const mxf::HeaderMetadata header = readMetadata(file, clip);
        Answering answering(file, header, messages);
        if (!std::all_of(requirements_.begin(), requirements_.end(),
                         [&](const auto& each) { return answering.fulfils(each); })) {
            return;
        }
        AnswerTable table;
        for (const Question& question : questions_) {
            table.push_back(answering.answer(question));
        }
        messages.flush();
        print(task.output, head + textOf(table, header.metadata->partitionDictionary(), task));
        bool isAnswered = true;
        for (std::size_t i = 0; i != table.size(); ++i) {
            if (!table[i].empty()) {
                continue;
            }
            isAnswered = false;
            if (!isTable()) { // there the cell is empty
                messages.error(questions_[i].text + ": no value");
            }
        }
        if (!isAnswered) {
            throw EndedWith{exitRefused};
        }
        refuseWarnings(options_.warningsAsErrors, messages);
    }

private:
    bool isTable() const {
        return options_.form == Form::csv || options_.form == Form::spreadsheet;
    }

    std::string textOf(const AnswerTable& table, const Metadata::PartitionDictionary& tags,
                       const FileTask& task) const {
        switch (options_.form) {
        case Form::lines:
            break;
        case Form::csv:
        case Form::spreadsheet:
            return csvLine(cellsOf(table), options_.form == Form::spreadsheet);
        case Form::json: {
            const auto json = answerJson(task.messages.file(), questions_, table, tags);
            return (task.isOneOfMany ? jsonLine(json) : jsonText(json)) + "\n";
        }
        }
        return answerLines(table, options_.withFilename ? task.messages.file() + ":" : "",
                           options_.endsWithZeros ? '\0' : '\n');
    }

    const GetOptions& options_;
    std::vector<Question> questions_;
    std::vector<Question> requirements_;
};

} // namespace

void get(const GetOptions& options, Messages& messages) {
    std::optional<Asking> asking;
    BatchWork many;
    using Suffix = const char*;
    many.suffix = options.form == Form::json    ? Suffix{".json"}
                  : options.form == Form::lines ? Suffix{".txt"}
                                                : Suffix{".csv"};
    readFiles(
        options.batch, options.clip.dictionaries, std::move(many),
        [&](const Dictionary& dictionary, FileTask& task) {
            // In a folder, each file is a table of its own.
            const bool isAlone = !options.batch.outputFolder.empty();
            asking->ask(dictionary, isAlone ? asking->head() : "", task);
        },
        messages,
        [&](const Dictionary& dictionary, BatchWork& work) {
            asking.emplace(options, dictionary);
            work.head = asking->head();
        });
}

} // namespace Corvid::Tool
