#pragma once

#include "inspection/query/Path.h"

#include <optional>

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
/// begins and ends with " or '. Blanks around names and values don't count.
///
/// @param dictionary  must outlive the path.
/// @throws InvalidArgument  the text is no path, a name means nothing, or its prefix is missing
///     where several have it. The message has the character and, for a name, similar ones.
Path parsePath(const std::string& text, const MetaMetadata::Dictionary& dictionary);

/// What is asked of a file: a field, "@title", or a path, and whether it has a value.
struct Question {
    enum class Kind : unsigned char {
        stated,  ///< nothing follows: there is a value
        equal,   ///< "=": one of the values is that
        unequal, ///< "!=": none is
    };

    std::string text;         ///< of the field or path, as people wrote it; UTF-8
    std::string field;        ///< its name, without "@"; empty for a path
    std::optional<Path> path; ///< where there is no field
    Kind kind = Kind::stated;
    std::string value; ///< UTF-8
};

/// Reads a question:
///
///     question = ("@" name | path) [("=" | "!=") (bare | quoted)]
///
/// A bare value ends with the text, else all is as in a path.
/// @throws InvalidArgument  as parsePath().
Question parseQuestion(const std::string& text, const MetaMetadata::Dictionary& dictionary);

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
