#pragma once

#include "XMLBuilder/reader/nodes/ChildSteps.h"
#include "XMLBuilder/reader/nodes/NodePool.h"

#include <xercesc/dom/DOM.hpp>

namespace Corvid::XMLBuilder {

/// Gives the nodes of a DOM to the reader, and answers what only the DOM can.
class DomNodes final : public DomQueries {
public:
    /// @param root  of the document; borrowed.
    explicit DomNodes(const xercesc::DOMElement& root);

    /// The root without its children.
    const DocumentNode& root() const noexcept { return root_; }

    /// A child of the root with all that it holds, until the next call.
    const DocumentNode& copyOf(const xercesc::DOMNode& child);

    void refusePrefix(const DocumentNode& context, const char16_t* prefix) const override;
    void nameTags(ExtensionTags& tags) override;

private:
    NodePool ofRoot_;
    NodePool ofChild_;
    const DocumentNode& root_;
};

} // namespace Corvid::XMLBuilder
