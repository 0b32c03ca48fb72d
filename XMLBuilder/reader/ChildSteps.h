#pragma once

#include "XMLBuilder/reader/DocumentNode.h"

#include <cstdint>
#include <vector>

namespace Corvid::XMLBuilder {

/// A step to children by name, "./prefix:name", prepared to be taken many times.
///
/// Plain is a step whose prefix and name are names without colon (NCName). Any other text is an
/// XPath expression of its own, right or wrong, and left to XQilla.
class ChildStep {
public:
    /// @param prefix  zero-terminated; borrowed.
    /// @param name    zero-terminated; borrowed.
    ChildStep(const char16_t* prefix, const char16_t* name, bool isPlain) noexcept;

    const char16_t* prefix() const noexcept { return prefix_; }
    const char16_t* name() const noexcept { return name_; }
    bool isPlain() const noexcept { return plain_; }

private:
    friend class ChildSteps;

    const char16_t* prefix_;
    const char16_t* name_;
    std::uint32_t hash_;
    bool plain_;
};

/// Answers child steps from one node.
///
/// Evaluating an expression with XQilla costs some hundred times what looking at the children does.
/// So the two shapes that nearly every query has, any child element and children of one name, are
/// answered here, and only the rest goes to XQilla. Both ways give the same nodes: children match
/// by their expanded names, in document order.
class ChildSteps {
public:
    /// Looks at the children once.
    /// @param context  borrowed; its children must not change while this object is used.
    void reset(const DocumentNode& context);

    /// How many child elements there are.
    std::size_t count() const noexcept { return entries_.size(); }

    /// False only where the step leads nowhere: the quick answer for most of what a set may hold.
    bool mayHave(const ChildStep& step) const noexcept {
        return (hashes_ & bitOf(step.hash_)) != 0;
    }

    /// The first child element that the step leads to, or null.
    /// @param step  plain.
    /// @param uri   what its prefix means.
    const DocumentNode* first(const ChildStep& step, const char16_t* uri) const;

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

    /// Whether a step of a prefix and a name is plain.
    virtual bool isPlain(const char16_t* prefix, const char16_t* name) const = 0;

    /// The first node that any step leads to, or null, as XQilla finds it; the element or
    /// attribute, or a node without content in place of another kind.
    /// @param context  also the node whose namespaces hold.
    /// @param uri      what the step's prefix means although it is not declared, or null.
    /// @throws         what XQilla throws for an expression that can't be compiled.
    virtual const DocumentNode* evaluate(const DocumentNode& context, const ChildStep& step,
                                         const char16_t* uri) = 0;

    /// Has all local tags kept that the document names.
    virtual void nameTags(ExtensionTags& tags) = 0;
};

} // namespace Corvid::XMLBuilder
