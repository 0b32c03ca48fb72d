#pragma once

#include <xercesc/dom/DOM.hpp>

#include <string_view>
#include <utility>
#include <vector>

namespace Corvid::XMLBuilder {

/// What prefixes stand for at one element of a document.
///
/// Whoever goes into a document hands the scope of the outer element to that of the inner one. What
/// a prefix stands for is looked for on the way between the two only, whatever the depth. Sets
/// seldom declare namespaces of their own, so nearly all of them share what was found out for the
/// root.
class PrefixScope {
public:
    explicit PrefixScope(const xercesc::DOMElement& root);
    /// @param element  an element inside the one that `around` is about. Both are borrowed.
    PrefixScope(const xercesc::DOMElement& element, PrefixScope& around);
    PrefixScope(const PrefixScope&) = delete;
    PrefixScope& operator=(const PrefixScope&) = delete;

    /// The namespace of a prefix, or null.
    /// @param prefix  borrowed until the object ends, and those around it.
    const XMLCh* uriOf(const XMLCh* prefix);

private:
    /// Calls visit for the element and those around it up to the other scope's, until it says true.
    template <class Visit> bool climb(Visit visit) const;

    const xercesc::DOMElement& element_;
    PrefixScope* around_;   ///< null at the root
    PrefixScope* declares_; ///< the innermost that has declarations of its own, or the root's
    std::vector<std::pair<std::u16string_view, const XMLCh*>> known_;
};

} // namespace Corvid::XMLBuilder
