#include "fuzz/xml/Pieces.h"

#include <algorithm>

namespace Corvid::Fuzzing {

namespace {

using Kind = Piece::Kind;

constexpr std::string_view space = " \t\r\n";
/// What ends a name; everything else can be part of one, for a name may be wrong.
constexpr std::string_view noName = " \t\r\n/>='\"<?";

std::string_view takeUntil(std::string_view& rest, std::size_t at) {
    const auto taken = rest.substr(0, at);
    rest.remove_prefix(taken.size());
    return taken;
}

std::string_view takeSpace(std::string_view& rest) {
    return takeUntil(rest, rest.find_first_not_of(space));
}

std::string_view takeName(std::string_view& rest) {
    return takeUntil(rest, rest.find_first_of(noName));
}

bool take(std::string_view& rest, std::string_view mark) {
    const bool isThere = rest.substr(0, mark.size()) == mark;
    rest.remove_prefix(isThere ? mark.size() : 0);
    return isThere;
}

bool takeAttribute(std::string_view& rest, Attribute& attribute) {
    std::string_view left = rest;
    attribute.before = takeSpace(left);
    attribute.name = takeName(left);
    const std::string_view front = left;
    takeSpace(left);
    if (attribute.before.empty() || attribute.name.empty() || !take(left, "=")) {
        return false;
    }
    takeSpace(left);
    attribute.equals = front.substr(0, front.size() - left.size());
    const char quote = left.empty() ? '\0' : left.front();
    const auto end = quote == '"' || quote == '\'' ? left.find(quote, 1) : std::string_view::npos;
    if (end == std::string_view::npos) {
        return false;
    }
    attribute.quote = quote;
    attribute.value = left.substr(1, end - 1);
    rest = left.substr(end + 1);
    return true;
}

/// Takes a piece between two marks.
bool takeBetween(std::string_view& rest, std::string_view front, std::string_view back, Kind kind,
                 Piece& piece) {
    std::string_view left = rest;
    if (!take(left, front)) {
        return false;
    }
    const auto end = left.find(back);
    if (end == std::string_view::npos) {
        return false;
    }
    piece.kind = kind;
    piece.text = left.substr(0, end);
    rest = left.substr(end + back.size());
    return true;
}

bool takeTag(std::string_view& rest, Piece& piece) {
    std::string_view left = rest;
    if (!take(left, "<")) {
        return false;
    }
    const bool isEnd = take(left, "/");
    piece.name = takeName(left);
    if (piece.name.empty()) {
        return false;
    }
    piece.attributes = isEnd ? std::vector<Attribute>() : takeAttributes(left);
    piece.text = takeSpace(left);
    piece.kind = isEnd ? Kind::end : take(left, "/") ? Kind::empty : Kind::start;
    if (!take(left, ">")) {
        return false;
    }
    rest = left;
    return true;
}

bool takeMarkup(std::string_view& rest, Piece& piece) {
    if (takeBetween(rest, "<?", "?>", Kind::instruction, piece)) {
        std::string_view data = piece.text;
        piece.name = takeName(data);
        piece.text = std::string(data);
        return true;
    }
    return takeBetween(rest, "<!--", "-->", Kind::comment, piece) ||
           takeBetween(rest, "<![CDATA[", "]]>", Kind::characterData, piece) ||
           takeTag(rest, piece);
}

} // namespace

std::vector<Attribute> takeAttributes(std::string_view& text) {
    std::vector<Attribute> attributes;
    for (Attribute attribute; takeAttribute(text, attribute);) {
        attributes.push_back(attribute);
    }
    return attributes;
}

std::string join(const std::vector<Attribute>& attributes) {
    std::string text;
    for (const Attribute& each : attributes) {
        text += each.before + each.name + each.equals + each.quote + each.value + each.quote;
    }
    return text;
}

Pieces takeApart(std::string_view text) {
    Pieces pieces;
    std::string between;
    const auto endText = [&] {
        if (!between.empty()) {
            pieces.push_back({Kind::text, {}, {}, std::move(between)});
            between.clear();
        }
    };
    while (!text.empty()) {
        Piece piece;
        if (takeMarkup(text, piece)) {
            endText();
            pieces.push_back(std::move(piece));
        } else {
            // A bracket that begins nothing is text.
            between += takeUntil(text, text.find('<', 1));
        }
    }
    endText();
    return pieces;
}

std::string join(const Pieces& pieces) {
    std::string text;
    for (const Piece& piece : pieces) {
        switch (piece.kind) {
        case Kind::start:
            text += "<" + piece.name + join(piece.attributes) + piece.text + ">";
            break;
        case Kind::empty:
            text += "<" + piece.name + join(piece.attributes) + piece.text + "/>";
            break;
        case Kind::end:
            text += "</" + piece.name + piece.text + ">";
            break;
        case Kind::characterData:
            text += "<![CDATA[" + piece.text + "]]>";
            break;
        case Kind::comment:
            text += "<!--" + piece.text + "-->";
            break;
        case Kind::instruction:
            text += "<?" + piece.name + piece.text + "?>";
            break;
        case Kind::text:
            text += piece.text;
        }
    }
    return text;
}

std::vector<std::size_t> endsOf(const Pieces& pieces) {
    std::vector<std::size_t> ends(pieces.size());
    std::vector<std::size_t> open;
    for (std::size_t i = 0; i != pieces.size(); ++i) {
        ends[i] = i + 1;
        if (pieces[i].kind == Kind::start) {
            ends[i] = pieces.size();
            open.push_back(i);
        } else if (pieces[i].kind == Kind::end && !open.empty()) {
            ends[open.back()] = i + 1;
            open.pop_back();
        }
    }
    return ends;
}

} // namespace Corvid::Fuzzing
