#include "XMLBuilder/writer/NamespaceMap.h"

#include <algorithm>

namespace Corvid::XMLBuilder {

NamespaceMap::NamespaceMap() { insert(Names::s377m); }

void NamespaceMap::insertUnlessPrefixInUse(const Names::Namespace& names) {
    if (uriOf(names.prefix).empty()) {
        insert(names);
    }
}

void NamespaceMap::insertValueNamespaces() {
    if (!hasValueNamespaces_) {
        insertUnlessPrefixInUse(Names::types);
        insertUnlessPrefixInUse(Names::s422mTypes);
        hasValueNamespaces_ = true;
    }
}

std::u16string_view NamespaceMap::uriOf(std::u16string_view prefix) const {
    const auto entry = std::find_if(entries_.begin(), entries_.end(),
                                    [prefix](const auto& e) { return e.second == prefix; });
    return entry == entries_.end() ? std::u16string_view(u"") : entry->first;
}

} // namespace Corvid::XMLBuilder
