// Attributes: what sets are called, where links lead to, and the rest.

#include "fuzz/xml/Changes.h"

namespace Corvid::Fuzzing {

namespace {

using Attributes = std::vector<Attribute*>;

bool isAny(const Attribute&) { return true; }

Attributes identifiersOf(Pieces& pieces) {
    return attributesOf(pieces, [](const Attribute& each) { return isIdentifier(each.value); });
}

/// A tag with attributes, or null.
Piece* oneTag(Pieces& pieces, Random& random) {
    std::vector<Piece*> tags;
    for (Piece& piece : pieces) {
        if (!piece.attributes.empty()) {
            tags.push_back(&piece);
        }
    }
    return tags.empty() ? nullptr : oneOf(tags, random);
}

/// Two sets get one identifier, or a link leads elsewhere.
void copyIdentifier(Pieces& pieces, Random& random) {
    if (const Attributes all = identifiersOf(pieces); !all.empty()) {
        oneOf(all, random)->value = std::string(oneOf(all, random)->value);
    }
}

void swapIdentifiers(Pieces& pieces, Random& random) {
    if (const Attributes all = identifiersOf(pieces); !all.empty()) {
        oneOf(all, random)->value.swap(oneOf(all, random)->value);
    }
}

/// A link leads nowhere, or no link leads to a set.
void spoilIdentifier(Pieces& pieces, Random& random) {
    if (const Attributes all = identifiersOf(pieces); !all.empty()) {
        changeDigit(oneOf(all, random)->value, random);
    }
}

/// Links and instructions still lead to the set, whose identifier may be no identifier any more.
void spoilIdentifierEverywhere(Pieces& pieces, Random& random) {
    const Attributes all = identifiersOf(pieces);
    if (all.empty()) {
        return;
    }
    const std::string before = oneOf(all, random)->value;
    std::string after = before;
    if (onceIn(2, random)) {
        changeDigit(after, random);
    } else {
        mutateBytes(after);
    }
    for (Attribute* each : all) {
        if (each->value == before) {
            each->value = after;
        }
    }
    for (Piece& piece : pieces) {
        if (const auto at = piece.text.find(before); at != std::string::npos) {
            piece.text.replace(at, before.size(), after);
        }
    }
}

void rearrangeAttributes(Pieces& pieces, Random& random) {
    if (Piece* const tag = oneTag(pieces, random)) {
        rearrange(tag->attributes, random);
    }
}

void copyAttribute(Pieces& pieces, Random& random) {
    const Attributes all = attributesOf(pieces, isAny);
    const std::vector<std::size_t> elements = elementsOf(pieces);
    if (!all.empty() && !elements.empty()) {
        const Attribute copy = *oneOf(all, random);
        pieces[oneOf(elements, random)].attributes.push_back(copy);
    }
}

void renameAttribute(Pieces& pieces, Random& random) {
    if (const Attributes all = attributesOf(pieces, isAny); !all.empty()) {
        oneOf(all, random)->name = std::string(oneOf(all, random)->name);
    }
}

void mutateValue(Pieces& pieces, Random& random) {
    if (const Attributes all = attributesOf(pieces, isAny); !all.empty()) {
        mutateBytes(oneOf(all, random)->value);
    }
}

void changeForm(Pieces& pieces, Random& random) {
    const Attributes all = attributesOf(pieces, isAny);
    if (all.empty()) {
        return;
    }
    constexpr const char* spaces[] = {"\n", "\t", "  ", "\r\n"};
    Attribute& attribute = *oneOf(all, random);
    switch (below(4, random)) {
    case 0:
        attribute.quote = attribute.quote == '"' ? '\'' : '"';
        break;
    case 1:
        attribute.before = oneOf(spaces, random);
        break;
    case 2:
        attribute.equals = std::string(oneOf(spaces, random)) + "= ";
        break;
    default:
        attribute.value.insert(below(attribute.value.size() + 1, random), oneOf(spaces, random));
    }
}

} // namespace

const std::array<Change, 9> attributeChanges = {{
    {"an identifier is that of another", copyIdentifier},
    {"two identifiers change places", swapIdentifiers},
    {"an identifier is spoilt", spoilIdentifier},
    {"an identifier is spoilt wherever it is", spoilIdentifierEverywhere},
    {"attributes are rearranged", rearrangeAttributes},
    {"an attribute is copied to another element", copyAttribute},
    {"an attribute gets the name of another", renameAttribute},
    {"the value of an attribute is mutated", mutateValue},
    {"an attribute is written otherwise", changeForm},
}};

bool isIdentifier(std::string_view text) {
    constexpr std::size_t length = 47;
    return text.size() == length && text[2] == '.' && text[length - 3] == '.';
}

void changeDigit(std::string& text, Random& random) {
    constexpr std::string_view digits = "0123456789abcdefABCDEF";
    std::vector<char*> found;
    for (char& each : text) {
        if (digits.find(each) != std::string_view::npos) {
            found.push_back(&each);
        }
    }
    if (!found.empty()) {
        *oneOf(found, random) = oneOf(digits, random);
    }
}

} // namespace Corvid::Fuzzing
