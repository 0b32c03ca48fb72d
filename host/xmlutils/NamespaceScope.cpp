#include "host/xmlutils/NamespaceScope.h"

namespace Corvid::XMLUtils {

void NamespaceScope::leave() {
    while (declared_.size() != marks_.back()) {
        const Declaration& last = declared_.back();
        // The key is a view into the text of the outermost declaration, which is still there.
        if (last.hidden == 0) {
            current_.erase(last.prefix);
        } else {
            current_.find(last.prefix)->second = last.hidden;
        }
        declared_.pop_back();
    }
    marks_.pop_back();
}

NamespaceScope::View NamespaceScope::uriOf(View prefix) const {
    const auto found = current_.find(prefix);
    return found == current_.end() ? View() : declared_[found->second - 1].uri;
}

void NamespaceScope::declare(View prefix, View uri) {
    const std::size_t place = declared_.size() + 1;
    const auto [entry, isFirst] = current_.try_emplace(prefix, place);
    declared_.push_back({prefix, uri, isFirst ? 0 : entry->second});
    entry->second = place;
}

std::u16string NamespaceScope::unusedPrefix() {
    std::u16string prefix;
    do {
        prefix = u"ns";
        for (const char digit : std::to_string(++prefixesMade_)) {
            prefix += static_cast<char16_t>(digit);
        }
    } while (!uriOf(prefix).empty());
    return prefix;
}

} // namespace Corvid::XMLUtils
