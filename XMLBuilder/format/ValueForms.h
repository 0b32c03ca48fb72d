#pragma once

namespace Corvid::XMLBuilder {

/// The forms that values have in XML, as host/types/ValueTypes.def names them for each type. Writer
/// and reader choose the overload for a value by them.
struct ValueForms {
    struct Integer {};             ///< decimal text
    struct Compound {};            ///< an element for each part
    struct Bytes {};               ///< hexadecimal text
    struct Text {};                ///< the text itself
    struct CodeUnit {};            ///< one code unit of text
    struct IdentifierText {};      ///< dotted hexadecimal text
    struct AttributeIdentifier {}; ///< the same, also as the value of an attribute
    struct ReferenceText {};       ///< the target's identifier, also as the value of an attribute
    struct PackedVersion {};       ///< two bytes as one decimal number
    struct Collection {};          ///< its items
};

/// Chooses an overload by a value type without a value of it.
template <class T> struct As {};

} // namespace Corvid::XMLBuilder
