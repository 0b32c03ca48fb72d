#pragma once

#include "host/base/KeyedHash.h"
#include "host/xmlutils/Limits.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <unordered_set>
#include <vector>

namespace Corvid::XMLUtils {

/// Counts the elements of a document, their attributes and names while it is parsed, and says
/// which is beyond a limit. Limits.h has the limits.
class ElementLimits {
public:
    void startDocument();

    /// An element begins.
    /// @param attributes  of its own, namespace declarations included.
    /// @param isOpen      false for one whose end is not reported.
    /// @return what is wrong with it, to follow its name; empty where nothing is.
    std::string startElement(std::size_t attributes, bool isOpen);
    void endElement() { open_.pop_back(); }

    /// The name of an element or attribute comes up.
    /// @param uri    a number for its namespace, where `parts` do not give it.
    /// @param parts  of the name; may be null. Borrowed.
    /// @return as startElement(), for the element that it is or belongs to.
    std::string useName(unsigned int uri, std::initializer_list<const char16_t*> parts);

    /// What is wrong with an element that, with those around it, has so many attributes.
    static std::string tooManyAttributes(std::size_t count);

private:
    /// For each open element the number of attributes that it and those around it have.
    std::vector<std::size_t> open_;
    KeyedHash hash_{KeyedHash::randomKey()};
    std::unordered_set<std::uint64_t> names_; ///< a hash for each name that came up
    std::u16string name_;                     ///< that came up last
};

} // namespace Corvid::XMLUtils
