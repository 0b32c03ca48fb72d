#include "host/xmlutils/scan/StartTagScanner.h"

#include "host/xmlutils/scan/AttributeValue.h"

#include <algorithm>

namespace Corvid::XMLUtils {

namespace {

bool isBlank(char16_t unit) { return unit == ' ' || unit == '\n' || unit == '\t' || unit == '\r'; }

bool endsName(char16_t unit) {
    // Most of what names have is beyond all of these.
    return unit <= '>' && (unit == '=' || unit == '>' || unit == '/' || isBlank(unit));
}

} // namespace

std::size_t StartTagScanner::scan(std::u16string_view piece) {
    std::size_t done = 0;
    while (done != piece.size() && !refused_) {
        done += step(piece.substr(done));
    }
    return done;
}

/// Takes at least one code unit, or goes on to a state that does.
std::size_t StartTagScanner::step(std::u16string_view rest) {
    switch (state_) {
    case State::content: {
        const std::size_t markup = std::min(rest.find(u'<'), rest.size() - 1);
        state_ = rest[markup] == '<' ? State::opened : State::content;
        return markup + 1;
    }
    case State::opened:
        return open(rest.front());
    case State::declaration:
        if (rest.front() == '-') {
            state_ = State::commentBegin;
        } else if (rest.front() == '[') {
            skipTo(u']', 2);
        } else {
            state_ = State::ended;
        }
        return 1;
    case State::commentBegin:
        skipTo(u'-', 2);
        return 1;
    case State::skipped:
        return skip(rest);
    case State::endTag: {
        const std::size_t end = std::min(rest.find(u'>'), rest.size() - 1);
        state_ = rest[end] == '>' ? State::content : State::endTag;
        return end + 1;
    }
    case State::elementName:
        return name(rest);
    case State::tag:
        return inTag(rest.front());
    case State::attributeName:
        return name(rest);
    case State::beforeValue:
        if (rest.front() == '"' || rest.front() == '\'') {
            quote_ = rest.front();
            state_ = State::value;
        } else if (rest.front() == '>') {
            state_ = State::content;
        }
        return 1;
    case State::value:
        return value(rest);
    case State::ended:
        break;
    }
    return rest.size();
}

std::size_t StartTagScanner::open(char16_t unit) {
    switch (unit) {
    case '/':
        state_ = State::endTag;
        return 1;
    case '!':
        state_ = State::declaration;
        return 1;
    case '?':
        skipTo(u'?', 1);
        return 1;
    default:
        state_ = State::elementName;
        return 0;
    }
}

void StartTagScanner::skipTo(char16_t end, std::size_t ends) {
    state_ = State::skipped;
    end_ = end;
    ends_ = ends;
    endsSeen_ = 0;
}

std::size_t StartTagScanner::skip(std::u16string_view rest) {
    for (std::size_t i = 0; i != rest.size(); ++i) {
        if (rest[i] == end_) {
            ++endsSeen_;
        } else if (rest[i] == '>' && endsSeen_ >= ends_) {
            state_ = State::content;
            return i + 1;
        } else {
            endsSeen_ = 0;
        }
    }
    return rest.size();
}

std::size_t StartTagScanner::name(std::u16string_view rest) {
    const auto* const end = std::find_if(rest.begin(), rest.end(), endsName);
    const std::u16string_view part(rest.data(), static_cast<std::size_t>(end - rest.begin()));
    if (end == rest.end() || !text_.empty()) {
        text_ += part;
    }
    if (end == rest.end()) {
        return part.size();
    }
    const std::u16string_view whole = text_.empty() ? part : text_;
    if (state_ == State::elementName) {
        state_ = State::tag;
        refused_ = !sink_.startTag(whole);
    } else {
        state_ = State::beforeValue;
        declares_ = declaresNamespace(whole);
        refused_ = !sink_.attribute(whole);
    }
    text_.clear();
    return part.size();
}

std::size_t StartTagScanner::inTag(char16_t unit) {
    if (unit == '>') {
        state_ = State::content;
        refused_ = !sink_.endOfTag();
    } else if (unit != '/' && !isBlank(unit)) {
        state_ = State::attributeName;
        return 0;
    }
    return 1;
}

std::size_t StartTagScanner::value(std::u16string_view rest) {
    const std::size_t end = std::min(rest.find(quote_), rest.size());
    if (declares_) {
        text_ += rest.substr(0, end);
    }
    if (end == rest.size()) {
        return end;
    }
    state_ = State::tag;
    if (declares_) {
        refused_ = !sink_.namespaceUri(attributeValue(text_));
        text_.clear();
    }
    return end + 1;
}

} // namespace Corvid::XMLUtils
