#pragma once

#include <xercesc/dom/DOM.hpp>

#include <string_view>
#include <utility>
#include <vector>

namespace Corvid::XMLBuilder {

/// What prefixes stand for at the elements of one document. Sets seldom declare namespaces of their
/// own, so nearly all of them share what was found out for the first.
class PrefixScope {
public:
    /// The nearest element around the given one, itself included, that declares namespaces; the
    /// root if none does. Prefixes stand for the same at either.
    static const xercesc::DOMElement& declarerFor(const xercesc::DOMElement& element);

    /// The namespace of a prefix at an element, or null.
    /// @param prefix  borrowed until the object ends.
    const XMLCh* uriOf(const XMLCh* prefix, const xercesc::DOMElement& declarer);

private:
    const xercesc::DOMElement* declarer_ = nullptr; ///< the element that known_ is about
    std::vector<std::pair<std::u16string_view, const XMLCh*>> known_;
};

} // namespace Corvid::XMLBuilder
