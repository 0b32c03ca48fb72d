#pragma once

#include "host/metadata/Element.h"
#include "tools/corvid/Difference.h"
#include "tools/corvid/Renaming.h"

#include <optional>
#include <vector>

namespace Corvid::Tool {

/// What of a property's value counts when it is compared with another of the same property: two
/// values are the same where their images are.
struct ValueImage {
    std::optional<std::string> bytes; ///< nothing where there is no value
    std::vector<DifferenceKind> lost; ///< what of the value is not in the image, each kind once

    /// True for a value that must not stand in a document.
    bool isRefused() const;

    friend bool operator==(const ValueImage& a, const ValueImage& b) { return a.bytes == b.bytes; }
    friend bool operator!=(const ValueImage& a, const ValueImage& b) { return !(a == b); }
};

/// The image of the whole value: its bytes, but for zeros behind a text, and the item size of what
/// holds no items; references renamed.
ValueImage imageOf(const Metadata::Element& element, const Renaming& renaming);

/// The image of what comes back from XML; nothing where it may not be written at all. How a value
/// stands there is told here a second time on purpose: a comparison that asked the writer could not
/// find its mistakes.
ValueImage imageInXml(const Metadata::Element& element, const Renaming& renaming);

} // namespace Corvid::Tool
