// Namespaces: prefixes and what they are bound to.

#include "fuzz/xml/Changes.h"

namespace Corvid::Fuzzing {

namespace {

using Attributes = std::vector<Attribute*>;

constexpr std::string_view declaration = "xmlns:";
constexpr std::string_view byDefault = "xmlns";

bool declaresPrefix(const Attribute& attribute) {
    return std::string_view(attribute.name).substr(0, declaration.size()) == declaration;
}

bool declares(const Attribute& attribute) {
    return declaresPrefix(attribute) || attribute.name == byDefault;
}

Attribute* oneDeclaration(Pieces& pieces, Random& random, bool (*is)(const Attribute&)) {
    const Attributes all = attributesOf(pieces, is);
    return all.empty() ? nullptr : oneOf(all, random);
}

void renamePrefixOf(std::string& name, const std::string& before, const std::string& after) {
    if (name.compare(0, before.size(), before) == 0) {
        name.replace(0, before.size(), after);
    }
}

std::string onePrefix(Pieces& pieces, Random& random) {
    constexpr const char* prefixes[] = {"ns0", "a",  "s377m", "rp210",   "types",
                                        "xml", "x-", "xmlns", "\xC3\xA9"};
    if (const Attribute* const other = oneDeclaration(pieces, random, declaresPrefix);
        other != nullptr && onceIn(3, random)) {
        return other->name.substr(declaration.size());
    }
    return oneOf(prefixes, random);
}

/// The document means the same, if the prefix was free.
void renameEverywhere(Pieces& pieces, Random& random) {
    Attribute* const found = oneDeclaration(pieces, random, declaresPrefix);
    if (found == nullptr) {
        return;
    }
    const std::string before = found->name.substr(declaration.size());
    const std::string after = onePrefix(pieces, random);
    for (Piece& piece : pieces) {
        renamePrefixOf(piece.name, before + ":", after + ":");
        for (Attribute& attribute : piece.attributes) {
            renamePrefixOf(attribute.name, before + ":", after + ":");
            if (attribute.name == std::string(declaration) + before) {
                attribute.name = std::string(declaration) + after;
            }
        }
    }
}

void renameInDeclaration(Pieces& pieces, Random& random) {
    if (Attribute* const found = oneDeclaration(pieces, random, declaresPrefix)) {
        found->name = std::string(declaration) + onePrefix(pieces, random);
    }
}

void renameInTag(Pieces& pieces, Random& random) {
    const std::vector<std::size_t> elements = elementsOf(pieces);
    if (elements.empty()) {
        return;
    }
    const std::size_t at = oneOf(elements, random);
    const std::string name = pieces[at].name;
    const std::string renamed = onePrefix(pieces, random) + ":" + name.substr(name.find(':') + 1);
    pieces[at].name = renamed;
    if (Piece& last = pieces[endsOf(pieces)[at] - 1]; last.kind == Piece::Kind::end) {
        last.name = renamed;
    }
}

void bindOtherwise(Pieces& pieces, Random& random) {
    constexpr const char* names[] = {"", "urn:x", "http://www.w3.org/XML/1998/namespace",
                                     "http://www.w3.org/2000/xmlns/", "urn:SMPTE:S377M "};
    Attribute* const found = oneDeclaration(pieces, random, declares);
    const Attribute* const other = oneDeclaration(pieces, random, declares);
    if (found != nullptr) {
        found->value = onceIn(2, random) ? std::string(other->value) : oneOf(names, random);
    }
}

void drop(Pieces& pieces, Random& random) {
    const Attribute* const found = oneDeclaration(pieces, random, declares);
    for (Piece& piece : pieces) {
        for (std::size_t i = 0; i != piece.attributes.size(); ++i) {
            if (&piece.attributes[i] == found) {
                piece.attributes.erase(piece.attributes.begin() + static_cast<std::ptrdiff_t>(i));
                return;
            }
        }
    }
}

/// Elements lose a prefix and mean the same.
void makeDefault(Pieces& pieces, Random& random) {
    Attribute* const found = oneDeclaration(pieces, random, declaresPrefix);
    if (found == nullptr) {
        return;
    }
    const std::string prefix = found->name.substr(declaration.size()) + ":";
    found->name = byDefault;
    for (Piece& piece : pieces) {
        renamePrefixOf(piece.name, prefix, "");
    }
}

/// An element inside declares a prefix again, or the only time.
void declareInside(Pieces& pieces, Random& random) {
    const Attribute* const found = oneDeclaration(pieces, random, declares);
    const std::vector<std::size_t> elements = elementsOf(pieces);
    if (found == nullptr || elements.empty()) {
        return;
    }
    const Attribute copy = *found;
    if (onceIn(3, random)) {
        drop(pieces, random);
    }
    pieces[oneOf(elements, random)].attributes.push_back(copy);
    if (onceIn(3, random)) {
        bindOtherwise(pieces, random);
    }
}

} // namespace

const std::array<Change, 7> namespaceChanges = {{
    {"a prefix is renamed everywhere", renameEverywhere},
    {"a prefix is renamed where it is declared", renameInDeclaration},
    {"an element gets another prefix", renameInTag},
    {"a prefix is bound to another namespace", bindOtherwise},
    {"a declaration is dropped", drop},
    {"a namespace becomes the default", makeDefault},
    {"a prefix is declared inside", declareInside},
}};

} // namespace Corvid::Fuzzing
