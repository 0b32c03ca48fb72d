#pragma once

#include "host/metadata/Elements.h"
#include "host/types/Identifiers.h"

#include <optional>
#include <string>

namespace Corvid::Editing {

/// The most zeros that a text, or the items of a collection together, are filled up with on the
/// word of a document; what has more is written as bytes, so that no document makes much more than it
/// holds.
constexpr std::size_t greatestFilling = 1024;

/// The zeros that end a text, in bytes; 0 for a type that is no text.
std::size_t terminatorSize(Types::Identifiers::Identifier type);

/// The same for an element; 0 also for a collection.
std::size_t terminatorSize(const Metadata::Element& element);

inline Types::ByteView viewOf(const std::string& bytes) {
    return {reinterpret_cast<const Types::u8*>(bytes.data()), bytes.size()};
}

/// What makes the value of a document the value of the file.
struct Filling {
    std::size_t size; ///< of the value or, of a collection, of each item
    bool isOfItems;
};

/// Finds the filling of an element whose value does not come back by itself; nothing where there is
/// none.
/// @param stored  the bytes of the value.
std::optional<Filling> findFilling(const Metadata::Element& element, const std::string& stored);

/// Gives a value that size: a product version of 9 bytes, a text filled up with zeros, a collection
/// of items filled up with zeros or, where it holds none, of that item size. A value that has more,
/// or needs more zeros than greatestFilling, stays as it is.
void fillUp(Metadata::Element& element, std::size_t size);

} // namespace Corvid::Editing
