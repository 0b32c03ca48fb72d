#pragma once

#include <xercesc/dom/DOM.hpp>

#include <cstdint>
#include <string_view>
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
    ChildStep(const XMLCh* prefix, const XMLCh* name);

    const XMLCh* prefix() const noexcept { return prefix_; }
    const XMLCh* name() const noexcept { return name_; }
    bool isPlain() const noexcept { return plain_; }

private:
    friend class ChildSteps;

    const XMLCh* prefix_;
    const XMLCh* name_;
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
    void reset(const xercesc::DOMNode& context);

    /// How many child elements there are.
    std::size_t count() const noexcept { return entries_.size(); }

    /// False only where the step leads nowhere: the quick answer for most of what a set may hold.
    bool mayHave(const ChildStep& step) const noexcept {
        return (hashes_ & bitOf(step.hash_)) != 0;
    }

    /// The first child element that the step leads to, or null.
    /// @param step  plain.
    /// @param uri   what its prefix stands for.
    xercesc::DOMElement* first(const ChildStep& step, const XMLCh* uri) const;

    /// The first child element of an expanded name, or null, without looking at all children first.
    static xercesc::DOMElement* first(const xercesc::DOMNode& context, const XMLCh* name,
                                      const XMLCh* uri);
    /// The next sibling element of an expanded name, or null.
    static xercesc::DOMElement* next(const xercesc::DOMElement& found, const XMLCh* name,
                                     const XMLCh* uri);

    /// The child elements, "./*", one after the other; null behind the last.
    static xercesc::DOMElement* firstElement(const xercesc::DOMNode& context);
    static xercesc::DOMElement* nextElement(const xercesc::DOMElement& found);

    /// The first node that any step leads to, or null, as XQilla finds it.
    /// @param resolver  the node whose namespaces hold.
    /// @param uri       what the step's prefix stands for although it is not declared, or null.
    /// @throws          what XQilla throws for an expression that can't be compiled.
    static xercesc::DOMNode* evaluate(const xercesc::DOMNode& context,
                                      const xercesc::DOMNode& resolver, const ChildStep& step,
                                      const XMLCh* uri);

private:
    struct Entry {
        std::uint32_t hash;
        std::uint32_t order;
        xercesc::DOMElement* element;
    };
    static std::uint64_t bitOf(std::uint32_t hash) noexcept {
        return std::uint64_t{1} << (hash % 64);
    }

    std::uint64_t hashes_ = 0;   ///< one bit out of 64 for each entry
    std::vector<Entry> entries_; ///< by hash, then in document order
};

} // namespace Corvid::XMLBuilder
