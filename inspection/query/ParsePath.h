#pragma once

#include "inspection/query/Path.h"

namespace Corvid::Inspection {

/// How deep conditions are inside each other.
constexpr std::size_t deepestConditions = 16;

/// Reads a path:
///
///     path = step *("/" step)
///     step = ([prefix ":"] name | "*" | "**") ["[" cond *("," cond) "]"]
///     cond = 1*DIGIT | "last" | path ("=" | "!=") (bare | quoted)
///
/// Names are those of the dictionary, letter by letter; else but for case, blanks and punctuation,
/// or those that other documents have for the same. A bare value ends at "," or "]"; a quoted one
/// begins and ends with " or '.
///
/// @param dictionary  must outlive the path.
/// @throws InvalidArgument  the text is no path, a name means nothing, or its prefix is missing
///     where several have it. The message has the character and, for a name, similar ones.
Path parsePath(const std::string& text, const MetaMetadata::Dictionary& dictionary);

/// A change of the values that a path leads to.
struct Assignment {
    enum class Kind : unsigned char {
        replace, ///< "="
        append,  ///< "+="
        remove,  ///< "-="
    };

    Path path;
    Kind kind = Kind::replace;
    std::string value; ///< UTF-8; all that follows
};

/// Reads an assignment: a path, "=", "+=" or "-=", and a value.
/// @throws InvalidArgument  as parsePath().
Assignment parseAssignment(const std::string& text, const MetaMetadata::Dictionary& dictionary);

} // namespace Corvid::Inspection
