#pragma once

#include "XMLBuilder/reader/nodes/DocumentNode.h"

namespace Corvid::XMLBuilder {

/// Makes the list of an element's children, or that of its attributes, from the first to the last.
class NodeList {
public:
    /// @param first  the member that leads to the first one: firstChild or firstAttribute.
    /// Borrowed.
    explicit NodeList(const DocumentNode*& first) noexcept : end_(&first) {}

    /// @param node  borrowed.
    void append(DocumentNode& node) noexcept {
        *end_ = &node;
        end_ = &node.next;
    }

private:
    const DocumentNode** end_; ///< what leads to the next one
};

} // namespace Corvid::XMLBuilder
