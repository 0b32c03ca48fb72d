#pragma once

#include "XMLBuilder/reader/nodes/DocumentNode.h"

#include <string_view>
#include <utility>
#include <vector>

namespace Corvid::XMLBuilder {

/// The namespaces of prefixes at one element of a document.
///
/// The scope of an inner element gets that of an outer one. A prefix is looked for between the two
/// only, whatever the depth. Sets seldom declare namespaces of their own, so nearly all of them
/// share what was found out for the root.
class PrefixScope {
public:
    explicit PrefixScope(const DocumentNode& root);
    /// @param element  an element inside the one that `around` is about. Both are borrowed.
    PrefixScope(const DocumentNode& element, PrefixScope& around);
    PrefixScope(const PrefixScope&) = delete;
    PrefixScope& operator=(const PrefixScope&) = delete;

    /// The namespace of a prefix, or null.
    /// @param prefix  borrowed until the object ends, and those around it.
    const char16_t* uriOf(const char16_t* prefix);

private:
    /// Calls visit for the element and those around it up to the other scope's, until it says true.
    template <class Visit> bool climb(Visit visit) const;

    const DocumentNode& element_;
    PrefixScope* around_;   ///< null at the root
    PrefixScope* declares_; ///< the innermost that has declarations of its own, or the root's
    std::vector<std::pair<std::u16string_view, const char16_t*>> known_;
};

} // namespace Corvid::XMLBuilder
