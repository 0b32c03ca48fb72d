#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Corvid::XMLBuilder {

/// A node of a document while it is read, whether a DOM or a stream gives it. Its texts are
/// zero-terminated; they and the nodes that it leads to live as long as it does.
struct DocumentNode {
    enum class Kind : unsigned char {
        element,
        attribute, ///< namespace declarations included
        text,      ///< CDATA sections included
        other,     ///< a comment or processing instruction
    };

    Kind kind = Kind::element;
    std::uint32_t localHash = 0;   ///< of an element's local name, see HashedName
    const char16_t* name = u"";    ///< with its prefix; of an element or attribute
    const char16_t* local = u"";   ///< the name without prefix
    const char16_t* uri = nullptr; ///< the namespace of the name; null for none
    std::u16string_view value;     ///< points nowhere for an element

    const DocumentNode* parent = nullptr;         ///< the element around it; null for the root
    const DocumentNode* next = nullptr;           ///< the next sibling, or the next attribute
    const DocumentNode* firstChild = nullptr;     ///< attributes are no children
    const DocumentNode* firstAttribute = nullptr; ///< sorted by their names where a DOM gives them

    std::size_t line = 0;         ///< from 1; 0 where it is not known
    std::size_t column = 0;       ///< from 1; 0 where it is not known
    const void* origin = nullptr; ///< the node of the DOM, or null
};

/// An element, or null.
inline const DocumentNode* elementFrom(const DocumentNode* node) noexcept {
    while (node != nullptr && node->kind != DocumentNode::Kind::element) {
        node = node->next;
    }
    return node;
}

/// The child elements, one after the other; null after the last.
inline const DocumentNode* firstElement(const DocumentNode& node) noexcept {
    return elementFrom(node.firstChild);
}
inline const DocumentNode* nextElement(const DocumentNode& element) noexcept {
    return elementFrom(element.next);
}

/// The value of the first child; empty where there is none or it is an element.
inline const char16_t* firstValue(const DocumentNode& element) noexcept {
    const DocumentNode* const content = element.firstChild;
    return content == nullptr || content->value.data() == nullptr ? u"" : content->value.data();
}

/// The attribute with a name as written, or null.
inline const DocumentNode* findAttribute(const DocumentNode& element,
                                         std::u16string_view name) noexcept {
    const DocumentNode* attribute = element.firstAttribute;
    while (attribute != nullptr && attribute->name != name) {
        attribute = attribute->next;
    }
    return attribute;
}

/// The value of that attribute; empty where there is none.
inline const char16_t* attributeValue(const DocumentNode& element,
                                      std::u16string_view name) noexcept {
    const DocumentNode* const attribute = findAttribute(element, name);
    return attribute == nullptr ? u"" : attribute->value.data();
}

inline std::size_t attributeCount(const DocumentNode& element) noexcept {
    std::size_t count = 0;
    for (const auto* each = element.firstAttribute; each != nullptr; each = each->next) {
        ++count;
    }
    return count;
}

/// Whether two texts are the same, without a look at what follows the first difference.
inline bool isSameText(const char16_t* a, const char16_t* b) noexcept {
    while (*a == *b && *a != 0) {
        ++a;
        ++b;
    }
    return *a == *b;
}

/// Whether two namespaces are the same; null is that of no namespace, as is an empty one.
inline bool isSameNamespace(const char16_t* a, const char16_t* b) noexcept {
    return a == b || isSameText(a == nullptr ? u"" : a, b == nullptr ? u"" : b);
}

inline bool hasName(const DocumentNode& node, const char16_t* local, const char16_t* uri) noexcept {
    return isSameText(node.local, local) && isSameNamespace(node.uri, uri);
}

/// The attribute of a namespace and local name, or null.
inline const DocumentNode* findAttribute(const DocumentNode& element, const char16_t* local,
                                         const char16_t* uri) noexcept {
    const DocumentNode* attribute = element.firstAttribute;
    while (attribute != nullptr && !hasName(*attribute, local, uri)) {
        attribute = attribute->next;
    }
    return attribute;
}

} // namespace Corvid::XMLBuilder
