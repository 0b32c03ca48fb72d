#include "tools/corvid/get/Question.h"

#include "editing/values/ValueText.h"
#include "host/base/Exceptions.h"
#include "tools/corvid/input/ReadSummary.h"
#include "tools/corvid/terminal/Messages.h"
#include "tools/corvid/terminal/UsageError.h"

#include <algorithm>
#include <filesystem>

namespace Corvid::Tool {

namespace {

Question known(Inspection::Question parsed) {
    Question question{std::move(parsed)};
    if (!question.path) {
        question.known = findField(question.field);
        if (question.known == nullptr) {
            throw UsageError{"there is no field " + question.text + ", expected one of " +
                             namesOfFields()};
        }
    }
    return question;
}

} // namespace

Question parseQuery(const std::string& text, const MetaMetadata::Dictionary& dictionary) {
    try {
        Question query = known(Inspection::parseQuestion(text, dictionary));
        if (query.kind != Question::Kind::stated) {
            throw UsageError{"'" + text + "': a comparison belongs to --if"};
        }
        return query;
    } catch (const Exceptions::InvalidArgument& error) {
        std::error_code noFile;
        throw UsageError{std::filesystem::exists(text, noFile)
                             ? text +
                                   " is a file; with several files, put -q in front of each query"
                             : Platform::toUtf8(error.message())};
    }
}

Question parseRequirement(const std::string& text, const MetaMetadata::Dictionary& dictionary) {
    try {
        return known(Inspection::parseQuestion(text, dictionary));
    } catch (const Exceptions::InvalidArgument& error) {
        throw UsageError{Platform::toUtf8(error.message())};
    }
}

Answers Answering::answer(const Question& question) {
    Answers answers;
    if (question.known != nullptr) {
        if (!summary_) {
            summary_ = readSummary(file_, header_, messages_);
        }
        for (std::string& text :
             question.known->values({messages_.file(), *summary_, messages_.warnings()})) {
            answers.push_back({std::nullopt, answers.size(), std::move(text)});
        }
        return answers;
    }
    if (!query_) {
        query_.emplace(*header_.metadata, Editing::valueText);
    }
    for (const auto& place : query_->find(*question.path)) {
        std::size_t position = place.item.value_or(0);
        for (std::string& text : textsOf(place, Editing::valueText)) {
            answers.push_back({place, position++, std::move(text)});
        }
    }
    return answers;
}

bool Answering::fulfils(const Question& requirement) {
    const Answers answers = answer(requirement);
    const bool isThere =
        std::any_of(answers.begin(), answers.end(), [&requirement](const Answer& each) {
            return requirement.kind == Question::Kind::stated || each.text == requirement.value;
        });
    return isThere == (requirement.kind != Question::Kind::unequal);
}

} // namespace Corvid::Tool
