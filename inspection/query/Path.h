#pragma once

#include "host/dictionary/Dictionary.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Corvid::Inspection {

struct Condition;

/// One step of a path. It leads from a set to its properties and to the sets that it refers to
/// strongly, and from a property to the sets that it refers to.
struct Step {
    enum class Kind : unsigned char {
        named,    ///< what has a name
        any,      ///< every property of a set, every set that a property refers to
        anyDepth, ///< the set and all sets that strong references lead to
    };

    Kind kind = Kind::named;
    /// What the name means: several where another document has it as an alias.
    std::vector<const MetaMetadata::MetaElement*> properties;
    std::vector<const MetaMetadata::MetaMetadataSet*> classes; ///< and those that inherit from them
    std::vector<Condition> conditions; ///< each is about what those before it have left
};

/// Which places of a partition are meant. It begins with all of its sets.
struct Path {
    std::string text; ///< as people wrote it; UTF-8
    std::vector<Step> steps;
};

/// What a place must fulfil.
struct Condition {
    enum class Kind : unsigned char {
        position, ///< is the n-th item of a list, or the n-th set that a set leads to
        last,     ///< is the last one
        equal,    ///< one of the values that a path leads to from here has that text
        unequal,  ///< none has
    };

    Kind kind = Kind::position;
    std::uint32_t position = 0; ///< from 1
    Path path;
    std::string value; ///< UTF-8
};

} // namespace Corvid::Inspection
