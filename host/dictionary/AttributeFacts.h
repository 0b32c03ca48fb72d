#pragma once

namespace Corvid::MetaMetadata {

class MetaElement;

/// What the dictionary says of an element of a set, as a value.
struct AttributeFacts {
    /// What the element is in its set.
    enum class Kind : unsigned char {
        placed,    ///< a property that the set's class lists: MetaAttribute
        misplaced, ///< a property of other sets: MisplacedAttribute
        unknown,   ///< UnknownAttribute
    };

    Kind kind;
    bool isRequired = false;                 ///< an encoder must write it, even if it is empty
    const MetaElement* definition = nullptr; ///< null for an unknown one
    unsigned short localTag = 0;             ///< of an unknown one
    bool isUnfit = false; ///< an unknown one only because its bytes do not fit its type
};

} // namespace Corvid::MetaMetadata
