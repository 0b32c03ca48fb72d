#pragma once

#include "XMLBuilder/format/HashedName.h"
#include "XMLBuilder/reader/nodes/DocumentNode.h"

#include <cstdint>
#include <vector>

namespace Corvid::XMLBuilder {

/// Finds child elements of a node by name, as the XPath expression "./prefix:name" does: by their
/// expanded names, in document order. Evaluating it with XQilla takes some hundred times as long as
/// looking at the children.
class ChildSteps {
public:
    /// Looks at the children once.
    /// @param context  borrowed; its children must not change while this object is used.
    void reset(const DocumentNode& context);

    /// How many child elements there are.
    std::size_t count() const noexcept { return entries_.size(); }

    /// False only where no child has the name: the quick answer for most of what a set may hold.
    bool mayHave(const HashedName& name) const noexcept {
        return (hashes_ & bitOf(name.hash)) != 0;
    }

    /// The first child element of a local name in a namespace, or null.
    const DocumentNode* first(const HashedName& name, const char16_t* uri) const;

    /// The first child element of an expanded name, or null, without looking at all children first.
    static const DocumentNode* first(const DocumentNode& context, const char16_t* name,
                                     const char16_t* uri);
    /// The next sibling element of an expanded name, or null.
    static const DocumentNode* next(const DocumentNode& found, const char16_t* name,
                                    const char16_t* uri);

private:
    struct Entry {
        std::uint32_t hash;
        std::uint32_t order;
        const DocumentNode* element;
    };
    static std::uint64_t bitOf(std::uint32_t hash) noexcept {
        return std::uint64_t{1} << (hash % 64);
    }

    std::uint64_t hashes_ = 0;   ///< one bit out of 64 for each entry
    std::vector<Entry> entries_; ///< by hash, then in document order
};

class ExtensionTags;

/// What a reader asks about a document that only its DOM can answer.
class DomQueries {
public:
    virtual ~DomQueries() = default;

    /// Throws what evaluating an XPath expression throws whose prefix no element around the context
    /// declares.
    virtual void refusePrefix(const DocumentNode& context, const char16_t* prefix) const = 0;

    /// Has all local tags kept that the document names.
    virtual void nameTags(ExtensionTags& tags) = 0;
};

} // namespace Corvid::XMLBuilder
