#pragma once

#include "XMLBuilder/schema/TypeDescription.h"
#include "host/types/Identifiers.h"

#include <optional>
#include <string>
#include <vector>

namespace Corvid::XMLBuilder {

/// How the parts of a compound value follow one another on one line.
struct JoinedForm {
    CompoundType type;      ///< the parts in a document, `times` over
    std::string separators; ///< a character after each part but the last

    /// The value on one line.
    /// @param parts  the texts that a document has for them, in its order.
    std::string join(std::vector<std::string> parts) const;
    /// The texts that a document has for the parts; nothing where the text has not as many.
    std::optional<std::vector<std::string>> split(std::string text) const;
    /// The names of the parts in their places: "Numerator/Denominator".
    std::string pattern() const;
};

/// The form of a type; nothing for one that has no parts.
std::optional<JoinedForm> joinedFormOf(Types::Identifiers::Identifier type);

} // namespace Corvid::XMLBuilder
