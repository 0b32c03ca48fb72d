#pragma once

#include "XMLBuilder/format/Namespaces.h"

#include <cstddef>
#include <string>
#include <vector>

/// What a form says of its values in XML Schema.
namespace Corvid::XMLBuilder {

/// A text: another type, restricted.
struct SimpleType {
    struct Facet {
        const char16_t* name; ///< with the prefix "xs"
        std::u16string value;
    };

    std::u16string base; ///< of XML Schema, with the prefix "xs", or the name of a value type
    std::vector<Facet> facets;
};

/// Elements, one after the other.
struct CompoundType {
    struct Part {
        const char16_t* name; ///< the local name
        std::u16string type;  ///< the name of a value type
    };

    Names::Namespace names;            ///< of the parts, and of what is around them
    const char16_t* wrapper = nullptr; ///< the qualified name of the element around them, or null
    std::size_t times = 1;             ///< how often it is there with its parts
    std::vector<Part> parts;
};

/// References are links or sets, and a collection has a type for each of its properties.
struct NoType {};

} // namespace Corvid::XMLBuilder
