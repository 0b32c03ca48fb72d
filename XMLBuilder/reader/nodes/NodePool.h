#pragma once

#include "XMLBuilder/reader/nodes/DocumentNode.h"

#include <algorithm>
#include <memory_resource>
#include <new>
#include <vector>

namespace Corvid::XMLBuilder {

/// Memory for the nodes of a piece of a document, which go together.
class NodePool {
public:
    NodePool() : first_(firstSize), memory_(first_.data(), first_.size()) {}
    NodePool(const NodePool&) = delete;
    NodePool& operator=(const NodePool&) = delete;

    DocumentNode& add() {
        return *new (memory_.allocate(sizeof(DocumentNode), alignof(DocumentNode))) DocumentNode();
    }

    /// Memory for text of so many code units and the terminator.
    char16_t* addText(std::size_t size) {
        return static_cast<char16_t*>(
            memory_.allocate((size + 1) * sizeof(char16_t), alignof(char16_t)));
    }

    /// A copy with a terminator.
    std::u16string_view addText(std::u16string_view text) {
        char16_t* const copy = addText(text.size());
        *std::copy(text.begin(), text.end(), copy) = 0;
        return {copy, text.size()};
    }

    /// A copy of an element with all that it holds. The elements right around it, up to two, are
    /// copied without what else they hold; the root follows.
    DocumentNode& addCopy(const DocumentNode& element);

    /// Ends the life of all nodes and texts.
    void clear() noexcept { memory_.release(); }

private:
    DocumentNode& addShallowCopy(const DocumentNode& node, const DocumentNode* parent);

    static constexpr std::size_t firstSize = std::size_t{32} * 1024; ///< what most sets need

    std::vector<std::byte> first_;
    std::pmr::monotonic_buffer_resource memory_;
};

} // namespace Corvid::XMLBuilder
