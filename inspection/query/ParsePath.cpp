#include "inspection/query/ParsePath.h"

#include "host/base/Exceptions.h"
#include "inspection/query/DefinitionLookup.h"

#include <algorithm>
#include <limits>

namespace Corvid::Inspection {

namespace {

std::string trimmed(const std::string& text) {
    const auto begin = text.find_first_not_of(' ');
    return begin == std::string::npos ? ""
                                      : text.substr(begin, text.find_last_not_of(' ') + 1 - begin);
}

class Parser {
public:
    Parser(const std::string& text, const MetaMetadata::Dictionary& dictionary)
        : text_(text), dictionary_(dictionary) {}

    /// @param depth  how many conditions the path is inside of.
    Path path(std::size_t depth) {
        const std::size_t begin = at_;
        Path path;
        do {
            path.steps.push_back(step(depth));
        } while (take("/"));
        path.text = text_.substr(begin, at_ - begin);
        return path;
    }

    Question question() {
        Question question;
        const std::size_t begin = at_;
        if (take("@")) {
            question.field = trimmed(until("=!"));
        } else {
            question.path = path(0);
        }
        question.text = trimmed(text_.substr(begin, at_ - begin));
        if (take("!=")) {
            question.kind = Question::Kind::unequal;
        } else if (take("=")) {
            question.kind = Question::Kind::equal;
        } else if (!isAtEnd()) {
            refuse(question.path ? "/, [, = or !=" : "= or !=");
        } else {
            return question;
        }
        question.value = value("");
        if (!isAtEnd()) {
            refuse("nothing after the value in quotes");
        }
        return question;
    }

    /// @throws InvalidArgument  the next character is none of those that can follow.
    [[noreturn]] void refuse(const std::string& expected) const {
        fail(at_, "expected " + expected +
                      (at_ == text_.size() ? ", but it ends" : ", not '" + next() + "'"));
    }

    bool take(const char* token) {
        const std::string wanted = token;
        const bool is = text_.compare(at_, wanted.size(), wanted) == 0;
        at_ += is ? wanted.size() : 0;
        return is;
    }
    bool isAtEnd() const noexcept { return at_ == text_.size(); }
    std::string rest() const { return text_.substr(at_); }

private:
    [[noreturn]] void fail(std::size_t at, const std::string& what) const {
        throw Exceptions::InvalidArgument(
            "'" + text_ + "', character " + std::to_string(charactersBefore(at) + 1) + ": " + what,
            CORVID_HERE);
    }

    std::size_t charactersBefore(std::size_t at) const {
        constexpr unsigned char inside = 0x80;
        return static_cast<std::size_t>(
            std::count_if(text_.begin(), text_.begin() + static_cast<std::ptrdiff_t>(at),
                          [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != inside; }));
    }

    /// The whole character that is next.
    std::string next() const {
        std::size_t end = at_ + 1;
        while (end < text_.size() && (static_cast<unsigned char>(text_[end]) & 0xC0) == 0x80) {
            ++end;
        }
        return text_.substr(at_, end - at_);
    }

    std::string until(const char* stops) {
        const std::size_t end = std::min(text_.find_first_of(stops, at_), text_.size());
        std::string found = text_.substr(at_, end - at_);
        at_ = end;
        return found;
    }

    void passBlanks() { at_ = std::min(text_.find_first_not_of(' ', at_), text_.size()); }

    Step step(std::size_t depth) {
        Step step;
        const std::size_t begin = at_;
        if (take("**")) {
            if (depth != 0) {
                // Each set would be searched for each that the condition is about.
                fail(begin, "** has no place in a condition");
            }
            step.kind = Step::Kind::anyDepth;
        } else if (take("*")) {
            step.kind = Step::Kind::any;
        } else {
            name(step);
        }
        if (take("[")) {
            if (depth == deepestConditions) {
                fail(at_ - 1, "conditions are inside each other deeper than " +
                                  std::to_string(deepestConditions));
            }
            do {
                step.conditions.push_back(condition(depth + 1));
            } while (take(","));
            if (!take("]")) {
                refuse("] or ,");
            }
            passBlanks();
        }
        return step;
    }

    void name(Step& step) {
        const std::size_t begin = at_;
        // "-" belongs to a name unless it begins "-=".
        std::string found = until("/[]=,!+*-");
        while (!isAtEnd() && text_[at_] == '-' && text_.compare(at_, 2, "-=") != 0) {
            at_ += 1;
            found += "-" + until("/[]=,!+*-");
        }
        found = trimmed(found);
        if (found.empty()) {
            refuse("the name of a set or property, * or **");
        }
        const NamedDefinitions named = findDefinitions(dictionary_, found);
        if (!named.ambiguous.empty()) {
            fail(begin,
                 "several have the name " + found + ", expected one of " + listOf(named.ambiguous));
        }
        if (named.isEmpty()) {
            const auto near = nearDefinitions(dictionary_, found);
            fail(begin, "no set or property is called " + found +
                            (near.empty() ? "" : "; similar: " + listOf(near)));
        }
        step.properties = named.properties;
        step.classes = named.classes;
    }

    static std::string listOf(const std::vector<std::string>& names) {
        std::string list;
        for (const std::string& name : names) {
            list += (list.empty() ? "" : ", ") + name;
        }
        return list;
    }

    Condition condition(std::size_t depth) {
        const std::size_t begin = at_;
        const std::string word = trimmed(until(",]=!/[*"));
        const bool isWhole = isAtEnd() || text_[at_] == ',' || text_[at_] == ']';
        Condition condition;
        if (isWhole && word == "last") {
            condition.kind = Condition::Kind::last;
            return condition;
        }
        if (isWhole && Platform::isDigits(word)) {
            condition.position = position(begin, word);
            return condition;
        }
        at_ = begin;
        condition.path = path(depth);
        if (take("!=")) {
            condition.kind = Condition::Kind::unequal;
        } else if (take("=")) {
            condition.kind = Condition::Kind::equal;
        } else {
            refuse("= or !=");
        }
        condition.value = value(",]");
        return condition;
    }

    std::uint32_t position(std::size_t begin, const std::string& digits) const {
        std::uint64_t number = 0;
        constexpr std::uint64_t greatest = std::numeric_limits<std::uint32_t>::max();
        for (const char digit : digits) {
            number = std::min<std::uint64_t>(10 * number + static_cast<std::uint64_t>(digit - '0'),
                                             greatest);
        }
        if (number == 0) {
            fail(begin, "positions count from 1");
        }
        return static_cast<std::uint32_t>(number);
    }

    /// Blanks before and after it don't count.
    /// @param stops  where a bare value ends.
    std::string value(const char* stops) {
        passBlanks();
        for (const char* const quote : {"\"", "'"}) {
            if (take(quote)) {
                std::string found = until(quote);
                if (!take(quote)) {
                    refuse(std::string(quote) + " at the end of the value");
                }
                passBlanks();
                return found;
            }
        }
        return trimmed(until(stops));
    }

    const std::string& text_;
    const MetaMetadata::Dictionary& dictionary_;
    std::size_t at_ = 0;
};

} // namespace

Path parsePath(const std::string& text, const MetaMetadata::Dictionary& dictionary) {
    Parser parser(text, dictionary);
    Path path = parser.path(0);
    if (!parser.isAtEnd()) {
        parser.refuse("/ or [");
    }
    return path;
}

Question parseQuestion(const std::string& text, const MetaMetadata::Dictionary& dictionary) {
    return Parser(text, dictionary).question();
}

Assignment parseAssignment(const std::string& text, const MetaMetadata::Dictionary& dictionary) {
    Parser parser(text, dictionary);
    Assignment assignment;
    assignment.path = parser.path(0);
    if (parser.take("+=")) {
        assignment.kind = Assignment::Kind::append;
    } else if (parser.take("-=")) {
        assignment.kind = Assignment::Kind::remove;
    } else if (!parser.take("=")) {
        parser.refuse("/, [, =, += or -=");
    }
    assignment.value = parser.rest();
    return assignment;
}

} // namespace Corvid::Inspection
