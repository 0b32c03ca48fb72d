#include "XMLBuilder/reader/nodes/NodePool.h"

#include "XMLBuilder/reader/nodes/NodeList.h"

namespace Corvid::XMLBuilder {

DocumentNode& NodePool::addShallowCopy(const DocumentNode& node, const DocumentNode* parent) {
    DocumentNode& copy = add();
    copy = node;
    copy.parent = parent;
    copy.next = nullptr;
    copy.firstChild = nullptr;
    copy.firstAttribute = nullptr;
    if (node.value.data() != nullptr) {
        copy.value = addText(node.value);
    }
    NodeList attributes(copy.firstAttribute);
    for (const auto* each = node.firstAttribute; each != nullptr; each = each->next) {
        attributes.append(addShallowCopy(*each, &copy));
    }
    return copy;
}

DocumentNode& NodePool::addCopy(const DocumentNode& element) {
    constexpr int mostAround = 2;
    const DocumentNode* root = element.parent;
    while (root != nullptr && root->parent != nullptr) {
        root = root->parent;
    }
    const DocumentNode* around = root;
    std::vector<const DocumentNode*> outer;
    for (const auto* each = element.parent;
         each != nullptr && each != root && outer.size() != mostAround; each = each->parent) {
        outer.push_back(each);
    }
    for (auto each = outer.rbegin(); each != outer.rend(); ++each) {
        around = &addShallowCopy(**each, around);
    }
    DocumentNode& copy = addShallowCopy(element, around);
    struct Level {
        DocumentNode* copy;
        const DocumentNode* nextChild;
        NodeList children;
    };
    std::vector<Level> open{{&copy, element.firstChild, NodeList(copy.firstChild)}};
    while (!open.empty()) {
        Level& level = open.back();
        const DocumentNode* const child = level.nextChild;
        if (child == nullptr) {
            open.pop_back();
            continue;
        }
        level.nextChild = child->next;
        DocumentNode& made = addShallowCopy(*child, level.copy);
        level.children.append(made);
        open.push_back({&made, child->firstChild, NodeList(made.firstChild)});
    }
    return copy;
}

} // namespace Corvid::XMLBuilder
