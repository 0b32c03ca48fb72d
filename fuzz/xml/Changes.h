#pragma once

#include "fuzz/Mutation.h"
#include "fuzz/xml/Pieces.h"

#include <array>

namespace Corvid::Fuzzing {

/// One way to change a document. Where the document has nothing to change in this way, it stays.
struct Change {
    const char* name; ///< a few words for people
    void (*apply)(Pieces& pieces, Random& random);
};

/// Of one part of a document each.
extern const std::array<Change, 10> elementChanges;
extern const std::array<Change, 9> attributeChanges;
extern const std::array<Change, 7> namespaceChanges;
extern const std::array<Change, 12> textChanges;
extern const std::array<Change, 9> instructionChanges;

/// Puts an element of another document into this one, or in the place of one, or its instructions.
void takeOver(Pieces& pieces, const Pieces& donor, Random& random);

// What several of them use.

/// The indexes of the pieces of these kinds.
std::vector<std::size_t> indexesOf(const Pieces& pieces, std::initializer_list<Piece::Kind> kinds);
std::vector<std::size_t> elementsOf(const Pieces& pieces);

/// The attributes for which a question is answered with yes.
template <class Question>
std::vector<Attribute*> attributesOf(Pieces& pieces, const Question& question) {
    std::vector<Attribute*> found;
    for (Piece& piece : pieces) {
        for (Attribute& attribute : piece.attributes) {
            if (question(attribute)) {
                found.push_back(&attribute);
            }
        }
    }
    return found;
}

/// True for the text of an InstanceUID: 16 pairs of digits with full stops between them.
bool isIdentifier(std::string_view text);

/// Replaces one hexadecimal digit, if there is one.
void changeDigit(std::string& text, Random& random);

/// Inserts pieces.
void insert(Pieces& pieces, std::size_t at, const Pieces& added);

} // namespace Corvid::Fuzzing
