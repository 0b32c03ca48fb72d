#include "editing/supplement/SupplementText.h"

#include <algorithm>

namespace Corvid::Editing {

namespace {

/// Gives a document's characters one by one, those beyond ASCII as one character for all.
class Characters {
public:
    static constexpr char other = '\x7F';

    explicit Characters(std::string_view bytes) : rest_(bytes) {
        const auto startsWith = [&](std::string_view mark) {
            return rest_.substr(0, mark.size()) == mark;
        };
        using namespace std::string_view_literals;
        if (startsWith("\xFE\xFF"sv) || startsWith("\0<"sv)) {
            unit_ = 2;
            high_ = 0;
        } else if (startsWith("\xFF\xFE"sv) || startsWith("<\0"sv)) {
            unit_ = 2;
            high_ = 1;
        }
        if (unit_ == 2 && rest_[0] != '<' && rest_[1] != '<') {
            rest_.remove_prefix(2);
        } else if (startsWith("\xEF\xBB\xBF"sv)) {
            rest_.remove_prefix(3);
        }
    }

    bool atEnd() const { return rest_.size() < unit_; }
    char peek() const {
        const char low = rest_[unit_ - 1 - (unit_ == 2 ? high_ : 0)];
        const bool isAscii = low >= 0 && (unit_ == 1 || rest_[high_] == 0);
        return isAscii ? low : other;
    }
    char take() {
        const char each = peek();
        rest_.remove_prefix(unit_);
        line_ += each == '\n' ? 1 : 0;
        return each;
    }
    std::size_t line() const { return line_; }

private:
    std::string_view rest_;
    std::size_t unit_ = 1;
    std::size_t high_ = 0; ///< where the high byte of a unit of two is
    std::size_t line_ = 1;
};

/// Takes characters up to an end mark, and the mark.
/// @return what is before it; all of the document where it is absent.
std::string takeUpTo(Characters& document, std::string_view mark) {
    std::string text;
    while (!document.atEnd()) {
        text += document.take();
        if (text.size() >= mark.size() &&
            std::equal(mark.begin(), mark.end(),
                       text.end() - static_cast<std::ptrdiff_t>(mark.size()))) {
            text.resize(text.size() - mark.size());
            break;
        }
    }
    return text;
}

Instruction takeInstruction(Characters& document) {
    Instruction instruction;
    instruction.line = document.line();
    const std::string text = takeUpTo(document, "?>");
    const auto space = std::find_if(text.begin(), text.end(), [](char each) {
        return each == ' ' || each == '\t' || each == '\n' || each == '\r';
    });
    instruction.target.assign(text.begin(), space);
    instruction.data.assign(space, text.end());
    return instruction;
}

} // namespace

std::vector<Instruction> instructionsInFront(std::string_view document) {
    std::vector<Instruction> instructions;
    Characters rest(document);
    while (!rest.atEnd()) {
        const char each = rest.take();
        if (each != '<') {
            continue; // white space; anything else is for the parser to refuse
        }
        const char next = rest.atEnd() ? '\0' : rest.peek();
        if (next == '?') {
            rest.take();
            instructions.push_back(takeInstruction(rest));
        } else if (next == '!') {
            rest.take();
            if (rest.atEnd() || rest.peek() != '-') {
                break; // a document type, which the parser refuses
            }
            takeUpTo(rest, "-->");
        } else {
            break;
        }
    }
    return instructions;
}

} // namespace Corvid::Editing
