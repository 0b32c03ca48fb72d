#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Corvid::Fuzzing {

/// An attribute as it is written: before name equals quote value quote.
struct Attribute {
    std::string before; ///< white space
    std::string name;
    std::string equals; ///< "=" with the white space around it
    char quote = '"';
    std::string value; ///< with its references
};

/// A tag of a document, or what is between two of them.
struct Piece {
    enum class Kind : unsigned char {
        start,         ///< <name attributes>
        empty,         ///< <name attributes/>
        end,           ///< </name>
        characterData, ///< <![CDATA[text]]>
        comment,       ///< <!--text-->
        instruction,   ///< <?name text?>, the XML declaration too
        text,          ///< with its references; also what is nothing else
    };

    Kind kind = Kind::text;
    std::string name = {};
    std::vector<Attribute> attributes = {};
    std::string text = {}; ///< of a tag, the white space at its end
};

/// A document, in its order. A tree all the same: an element is a start tag and what follows up to
/// its end tag. The length of the list, and not the depth of the tree, is all that work depends on.
using Pieces = std::vector<Piece>;

/// Takes any text apart; join() gives the same text.
Pieces takeApart(std::string_view text);
std::string join(const Pieces& pieces);

/// Takes name="value" pairs from the front of a text, and leaves what is none.
std::vector<Attribute> takeAttributes(std::string_view& text);
std::string join(const std::vector<Attribute>& attributes);

/// For each piece, the index after its element; after itself where it begins none. End tags close
/// the innermost element whatever their name.
std::vector<std::size_t> endsOf(const Pieces& pieces);

} // namespace Corvid::Fuzzing
