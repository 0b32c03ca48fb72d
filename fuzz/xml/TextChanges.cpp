// What is between tags: values, and the forms in which text can be written.

#include "fuzz/xml/Changes.h"
#include "host/base/Hex.h"

namespace Corvid::Fuzzing {

namespace {

using Kind = Piece::Kind;
using namespace std::string_view_literals;

/// The text of an element without children; an empty one gets a text of its own. Null where there
/// is none.
Piece* oneLeaf(Pieces& pieces, Random& random) {
    std::vector<std::size_t> leaves;
    for (std::size_t i = 0; i + 1 < pieces.size(); ++i) {
        const Kind next = pieces[i + 1].kind;
        if (pieces[i].kind == Kind::start && (next == Kind::text || next == Kind::end)) {
            leaves.push_back(i + 1);
        }
    }
    if (leaves.empty()) {
        return nullptr;
    }
    const std::size_t at = oneOf(leaves, random);
    if (pieces[at].kind == Kind::end) {
        insert(pieces, at, {Piece{}});
    }
    return &pieces[at];
}

/// Changes the text of a leaf.
template <void (*change)(std::string&, Random&)> void inLeaf(Pieces& pieces, Random& random) {
    if (Piece* const leaf = oneLeaf(pieces, random)) {
        change(leaf->text, random);
    }
}

void setNumber(std::string& text, Random& random) {
    constexpr const char* numbers[] = {"0",
                                       "-0",
                                       "+1",
                                       "-1",
                                       "127",
                                       "128",
                                       "255",
                                       "256",
                                       "-128",
                                       "-129",
                                       "32767",
                                       "32768",
                                       "65535",
                                       "65536",
                                       "-32769",
                                       "2147483647",
                                       "2147483648",
                                       "-2147483649",
                                       "4294967295",
                                       "4294967296",
                                       "9223372036854775807",
                                       "9223372036854775808",
                                       "-9223372036854775809",
                                       "18446744073709551615",
                                       "18446744073709551616",
                                       "99999999999999999999999999",
                                       "1.5",
                                       "1e3",
                                       "0x10",
                                       "1 2",
                                       "\xC2\xB2",
                                       "\xD9\xA3"};
    text = oneOf(numbers, random);
}

void setHexadecimal(std::string& text, Random& random) {
    constexpr std::string_view digits = "0123456789abcdefABCDEFgG. ";
    switch (below(4, random)) {
    case 0:
        text += oneOf(digits, random);
        break;
    case 1:
        text.resize(text.size() / 2);
        break;
    case 2:
        text += std::string(text);
        break;
    default:
        changeDigit(text, random);
    }
}

void addSpace(std::string& text, Random& random) {
    constexpr std::string_view spaces[] = {" ",      "\t",       "\n",       "\r",          "\r\n",
                                           "&#xD;",  "&#xA;",    "\xC2\xA0", "\xC2\x85",    "&#9;",
                                           "\v\f"sv, "&#x2028;", "     ",    "\xE2\x80\xA8"};
    const std::string_view space = oneOf(spaces, random);
    const std::size_t places[] = {0, text.size(), below(text.size() + 1, random)};
    text.insert(oneOf(places, random), space);
}

void addOddCharacter(std::string& text, Random& random) {
    constexpr std::string_view characters[] = {"\0"sv,
                                               "\x01",
                                               "\x1F",
                                               "\x7F",
                                               "\xC2\x80",
                                               "\xC0\x80",
                                               "\xED\xA0\x80",
                                               "\xED\xB0\x80",
                                               "\xEF\xBF\xBE",
                                               "\xFF",
                                               "\xF4\x8F\xBF\xBF",
                                               "\xF5",
                                               "\xEF\xBF\xBD",
                                               "\xEF\xBB\xBF",
                                               "]]>",
                                               "&",
                                               "&#0;",
                                               "&#1;",
                                               "&#xD800;",
                                               "&#xDC00;",
                                               "&#xFFFE;",
                                               "&#xD;",
                                               "&#x10FFFF;",
                                               "&#x110000;",
                                               "&#x100000041;",
                                               "&lt;",
                                               "&amp;",
                                               "&apos;",
                                               "&nope;",
                                               "&#;",
                                               "&#x;",
                                               "&#-1;",
                                               "\xE2\x82\xAC",
                                               "\xF0\x9F\x8E\xAC"};
    const std::size_t places[] = {0, text.size(), below(text.size() + 1, random)};
    text.insert(oneOf(places, random), oneOf(characters, random));
}

void lengthen(std::string& text, Random& random) {
    constexpr std::size_t lengths[] = {128, 256, 1024, 4096, 16384, 65536, 131072};
    const std::string unit = text.empty() || onceIn(3, random) ? "A" : text;
    const std::size_t length = oneOf(lengths, random);
    while (text.size() < length) {
        text += unit;
    }
    text.resize(length - below(3, random));
}

void clear(std::string& text, Random&) { text.clear(); }

void mutateText(std::string& text, Random&) { mutateBytes(text); }

/// One character becomes a reference to it.
void refer(std::string& text, Random& random) {
    if (text.empty()) {
        return;
    }
    const std::size_t at = below(text.size(), random);
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte < 0x80 && byte != '&') {
        text.replace(at, 1,
                     onceIn(2, random)
                         ? "&#" + std::to_string(byte) + ";"
                         : "&#x000" + Hex::encoded<std::string>(&byte, 1, Hex::upper) + ";");
    }
}

void copyText(Pieces& pieces, Random& random) {
    const Piece* const from = oneLeaf(pieces, random);
    if (from != nullptr) {
        const std::string text = from->text;
        oneLeaf(pieces, random)->text = text;
    }
}

void becomeCharacterData(Pieces& pieces, Random& random) {
    if (Piece* const leaf = oneLeaf(pieces, random)) {
        leaf->kind = Kind::characterData;
    }
}

/// Puts a comment, an instruction, character data or an element inside a text.
void split(Pieces& pieces, Random& random) {
    static const Piece between[] = {
        {Kind::comment, {}, {}, "-"},       {Kind::comment, {}, {}, " < "},
        {Kind::instruction, "x", {}, " y"}, {Kind::instruction, "corvid", {}, " format=\"1\""},
        {Kind::characterData, {}, {}, ""},  {Kind::characterData, {}, {}, "1"},
        {Kind::empty, "a", {}, ""}};
    const std::vector<std::size_t> texts = indexesOf(pieces, {Kind::text, Kind::characterData});
    if (texts.empty()) {
        return;
    }
    const std::size_t at = oneOf(texts, random);
    Piece rest = pieces[at];
    const std::size_t length = below(rest.text.size() + 1, random);
    pieces[at].text.resize(length);
    rest.text.erase(0, length);
    insert(pieces, at + 1, {oneOf(between, random), rest});
}

/// Puts a document type, a declaration or text in a place where it may not be.
void addOutside(Pieces& pieces, Random& random) {
    constexpr const char* texts[] = {"<!DOCTYPE a>",
                                     "<!DOCTYPE a [<!ENTITY b \"c\">]>",
                                     "<?xml version=\"1.1\"?>",
                                     "<!-- -->",
                                     "\n",
                                     "x",
                                     "<!",
                                     "</a>"};
    insert(pieces, below(pieces.size() + 1, random), takeApart(oneOf(texts, random)));
}

} // namespace

const std::array<Change, 12> textChanges = {{
    {"a value is a number at a border", inLeaf<setNumber>},
    {"a value has other hexadecimal digits", inLeaf<setHexadecimal>},
    {"a value has white space", inLeaf<addSpace>},
    {"a value has an odd character", inLeaf<addOddCharacter>},
    {"a value is very long", inLeaf<lengthen>},
    {"a value is empty", inLeaf<clear>},
    {"a value is mutated", inLeaf<mutateText>},
    {"a value has a character reference", inLeaf<refer>},
    {"a value is that of another element", copyText},
    {"a value becomes character data", becomeCharacterData},
    {"a text is interrupted", split},
    {"something is where it may not be", addOutside},
}};

} // namespace Corvid::Fuzzing
