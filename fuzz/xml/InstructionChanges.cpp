// The processing instructions that say what elements have no place for (docs/format.md).

#include "fuzz/xml/Changes.h"

#include <algorithm>

namespace Corvid::Fuzzing {

namespace {

using Kind = Piece::Kind;

/// The instructions that are the command's; now and then any.
std::vector<std::size_t> instructionsOf(const Pieces& pieces, Random& random) {
    std::vector<std::size_t> all = indexesOf(pieces, {Kind::instruction});
    if (!onceIn(20, random)) {
        all.erase(std::remove_if(all.begin(), all.end(),
                                 [&](std::size_t each) { return pieces[each].name != "corvid"; }),
                  all.end());
    }
    return all;
}

Piece* oneInstruction(Pieces& pieces, Random& random) {
    const std::vector<std::size_t> all = instructionsOf(pieces, random);
    return all.empty() ? nullptr : &pieces[oneOf(all, random)];
}

/// An instruction: its kind, and what it says.
struct Saying {
    std::string kind; ///< with the white space in front; empty for the format
    std::vector<Attribute> attributes;
    std::string rest; ///< what is no attribute
};

Saying parse(const std::string& text) {
    Saying saying;
    std::string_view rest = text;
    saying.attributes = takeAttributes(rest);
    if (saying.attributes.empty()) {
        const auto end = std::min(rest.find_first_not_of(" \t\r\n"), rest.size());
        const auto after = std::min(rest.find_first_of(" \t\r\n", end), rest.size());
        saying.kind = rest.substr(0, after);
        rest.remove_prefix(after);
        saying.attributes = takeAttributes(rest);
    }
    saying.rest = rest;
    return saying;
}

std::string textOf(const Saying& saying) {
    return saying.kind + join(saying.attributes) + saying.rest;
}

/// The values of all attributes of a name in instructions, such as the labels of properties.
std::vector<std::string> valuesOf(const Pieces& pieces, std::string_view name) {
    std::vector<std::string> values;
    for (const std::size_t at : indexesOf(pieces, {Kind::instruction})) {
        for (Attribute& each : parse(pieces[at].text).attributes) {
            if (each.name == name) {
                values.push_back(std::move(each.value));
            }
        }
    }
    return values;
}

std::string oneSet(Pieces& pieces, Random& random) {
    const auto all =
        attributesOf(pieces, [](const Attribute& each) { return isIdentifier(each.value); });
    return all.empty() ? "01.02.03.04.05.06.07.08.09.0a.0b.0c.0d.0e.0f.10"
                       : oneOf(all, random)->value;
}

std::string oneLabel(const Pieces& pieces, Random& random) {
    constexpr const char* labels[] = {
        "06.0e.2b.34.01.01.01.02.05.20.07.01.03.01.00.00", // text
        "06.0e.2b.34.01.01.01.02.05.20.07.01.02.01.00.00", // text
        "06.0e.2b.34.01.01.01.05.01.02.02.10.02.02.00.00", // collections
        "06.0e.2b.34.01.01.01.02.06.01.01.04.05.01.00.00",
        "06.0e.2b.34.01.01.01.02.01.02.02.10.02.01.00.00",
        "06.0e.2b.34.01.01.01.02.05.20.07.01.04.00.00.00", // product version
        "06.0e.2b.34.01.01.01.0a.04.01.06.03.0d.00.00.00", // quantisation
        "06.0e.2b.34.01.01.01.01.01.01.15.02.00.00.00.00", // InstanceUID
        "3c.0a",
        "90.01"};
    const std::vector<std::string> known = valuesOf(pieces, "property");
    return known.empty() || onceIn(3, random) ? oneOf(labels, random) : oneOf(known, random);
}

std::string oneClass(Random& random) {
    constexpr const char* numbers[] = {"2f", "18", "30", "36", "37", "3b", "3a", "14", "29", "5a"};
    constexpr const char* versions[] = {"01", "02", "7f"};
    constexpr const char* codings[] = {"53", "13"};
    return std::string("06.0e.2b.34.02.") + oneOf(codings, random) + ".01." +
           oneOf(versions, random) + ".0d.01.01.01.01.01." + oneOf(numbers, random) + ".00";
}

std::string oneNumber(Random& random) {
    constexpr const char* numbers[] = {"0",     "1",          "2",         "3",    "9",
                                       "10",    "16",         "1024",      "1025", "65535",
                                       "65536", "4294967295", "4294967296"};
    return oneOf(numbers, random);
}

std::string oneValue(Random& random) {
    constexpr const char* values[] = {"",
                                      "00",
                                      "0000",
                                      "0041",
                                      "00410000",
                                      "FFFE",
                                      "D800",
                                      "0001",
                                      "0000000000000010",
                                      "0000000100000002AABB",
                                      "41",
                                      "C8"};
    return oneOf(values, random);
}

std::string setOrCopy(Pieces& pieces, Random& random) {
    std::string text = onceIn(4, random) ? " class=\"" + oneClass(random) + "\" copy=\""
                                         : " set=\"" + oneSet(pieces, random) + "\" copy=\"";
    text += oneNumber(random) + "\"";
    if (!onceIn(4, random)) {
        text.erase(text.rfind(" copy"));
    }
    return text;
}

std::string propertyOf(Pieces& pieces, Random& random) {
    return setOrCopy(pieces, random) + " property=\"" + oneLabel(pieces, random) + "\"" +
           (onceIn(6, random) ? " nth=\"" + oneNumber(random) + "\"" : "");
}

/// What an instruction of any kind says, about what the document holds.
std::string newText(Pieces& pieces, Random& random) {
    switch (below(10, random)) {
    case 0:
        return " form" + propertyOf(pieces, random) + " octets=\"" + oneNumber(random) + "\"";
    case 1:
        return " form" + propertyOf(pieces, random) + " item=\"" + oneNumber(random) + "\"";
    case 2:
        return " form text=\"terminated\"";
    case 3:
        return " primer tag=\"80.0" + std::to_string(below(10, random)) + "\" label=\"" +
               oneLabel(pieces, random) + "\"";
    case 4:
        return " key class=\"" + oneClass(random) + "\" key=\"" + oneClass(random) +
               "\" lengths=\"" + oneNumber(random) + "\"";
    case 5:
        return " key" + setOrCopy(pieces, random) + " key=\"" + oneClass(random) + "\"";
    case 6:
        return " copies set=\"" + oneSet(pieces, random) + "\" count=\"" + oneNumber(random) +
               (below(2, random) == 0 ? "\"" : "\" dark=\"" + oneNumber(random) + "\"");
    case 7:
        return " unidentified class=\"" + oneClass(random) + "\" count=\"" + oneNumber(random) +
               "\"";
    case 8:
        return " partial structural-only=\"" + oneNumber(random) + "\" start=\"" +
               oneSet(pieces, random) + "\"";
    default:
        return " bytes" + propertyOf(pieces, random) + " hex=\"" + oneValue(random) + "\"";
    }
}

void add(Pieces& pieces, Random& random) {
    Pieces added = {{Kind::instruction, "corvid", {}, newText(pieces, random)}};
    const std::vector<std::size_t> all = indexesOf(pieces, {Kind::instruction});
    const bool hasFormat = std::any_of(
        all.begin(), all.end(), [&](std::size_t each) { return pieces[each].name == "corvid"; });
    if (!hasFormat) {
        added.insert(added.begin(), {Kind::instruction, "corvid", {}, " format=\"1\""});
    }
    insert(pieces, all.empty() ? 0 : all.back() + 1, added);
}

void changeOneDigit(Pieces& pieces, Random& random) {
    if (Piece* const instruction = oneInstruction(pieces, random)) {
        changeDigit(instruction->text, random);
    }
}

void rearrangeInstructions(Pieces& pieces, Random& random) {
    const std::vector<std::size_t> all = instructionsOf(pieces, random);
    if (all.empty()) {
        return;
    }
    const std::size_t at = oneOf(all, random);
    switch (below(3, random)) {
    case 0:
        pieces.erase(pieces.begin() + static_cast<std::ptrdiff_t>(at));
        break;
    case 1:
        insert(pieces, at, {Piece(pieces[at])});
        break;
    default:
        std::swap(pieces[at], pieces[oneOf(all, random)]);
    }
}

void move(Pieces& pieces, Random& random) {
    const std::vector<std::size_t> all = instructionsOf(pieces, random);
    if (all.empty()) {
        return;
    }
    const std::size_t at = oneOf(all, random);
    const Piece moved = pieces[at];
    pieces.erase(pieces.begin() + static_cast<std::ptrdiff_t>(at));
    insert(pieces, below(pieces.size() + 1, random), {moved});
}

/// The value of an attribute becomes one that another instruction or the document has.
void sayAnother(Pieces& pieces, Random& random) {
    Piece* const instruction = oneInstruction(pieces, random);
    if (instruction == nullptr) {
        return;
    }
    Saying saying = parse(instruction->text);
    if (saying.attributes.empty()) {
        return;
    }
    Attribute& attribute = oneOf(saying.attributes, random);
    if (attribute.name == "set" || attribute.name == "start") {
        attribute.value = oneSet(pieces, random);
    } else if (attribute.name == "property") {
        attribute.value = oneLabel(pieces, random);
    } else if (attribute.name == "class" || attribute.name == "key") {
        attribute.value = oneClass(random);
    } else if (attribute.name == "hex") {
        attribute.value = oneValue(random);
    } else {
        attribute.value = oneNumber(random);
    }
    instruction->text = textOf(saying);
}

void rearrangeAttributes(Pieces& pieces, Random& random) {
    if (Piece* const instruction = oneInstruction(pieces, random)) {
        Saying saying = parse(instruction->text);
        if (!saying.attributes.empty()) {
            rearrange(saying.attributes, random);
            instruction->text = textOf(saying);
        }
    }
}

/// An attribute of another instruction joins.
void copyAttribute(Pieces& pieces, Random& random) {
    const Piece* const donor = oneInstruction(pieces, random);
    Piece* const instruction = oneInstruction(pieces, random);
    if (donor == nullptr || instruction == nullptr) {
        return;
    }
    Saying from = parse(donor->text);
    Saying to = parse(instruction->text);
    if (!from.attributes.empty()) {
        to.attributes.push_back(oneOf(from.attributes, random));
        instruction->text = textOf(to);
    }
}

void setKind(Pieces& pieces, Random& random) {
    constexpr const char* kinds[] = {"",       " primer", " key",     " form",
                                     " bytes", " copies", " partial", " unidentified"};
    if (Piece* const instruction = oneInstruction(pieces, random)) {
        Saying saying = parse(instruction->text);
        saying.kind = oneOf(kinds, random);
        instruction->text = textOf(saying);
    }
}

void mutateInstruction(Pieces& pieces, Random& random) {
    if (Piece* const instruction = oneInstruction(pieces, random)) {
        mutateBytes(instruction->text);
    }
}

} // namespace

const std::array<Change, 9> instructionChanges = {{
    {"an instruction is added", add},
    {"a digit of an instruction changes", changeOneDigit},
    {"instructions are rearranged", rearrangeInstructions},
    {"an instruction moves", move},
    {"an instruction says something else", sayAnother},
    {"attributes of an instruction are rearranged", rearrangeAttributes},
    {"an instruction gets an attribute of another", copyAttribute},
    {"an instruction becomes one of another kind", setKind},
    {"an instruction is mutated", mutateInstruction},
}};

} // namespace Corvid::Fuzzing
