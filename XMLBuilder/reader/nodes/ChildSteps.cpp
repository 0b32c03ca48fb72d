#include "XMLBuilder/reader/nodes/ChildSteps.h"

#include <algorithm>
#include <tuple>

namespace Corvid::XMLBuilder {

namespace {

const DocumentNode* namedFrom(const DocumentNode* element, const char16_t* name,
                              const char16_t* uri) {
    while (element != nullptr && !hasName(*element, name, uri)) {
        element = nextElement(*element);
    }
    return element;
}

} // namespace

void ChildSteps::reset(const DocumentNode& context) {
    entries_.clear();
    hashes_ = 0;
    for (const auto* child = firstElement(context); child != nullptr; child = nextElement(*child)) {
        const std::uint32_t hash = child->localHash;
        entries_.push_back({hash, static_cast<std::uint32_t>(entries_.size()), child});
        hashes_ |= bitOf(hash);
    }
    std::sort(entries_.begin(), entries_.end(), [](const Entry& a, const Entry& b) {
        return std::tie(a.hash, a.order) < std::tie(b.hash, b.order);
    });
}

const DocumentNode* ChildSteps::first(const HashedName& name, const char16_t* uri) const {
    auto entry = std::lower_bound(entries_.begin(), entries_.end(), name.hash,
                                  [](const Entry& a, std::uint32_t hash) { return a.hash < hash; });
    for (; entry != entries_.end() && entry->hash == name.hash; ++entry) {
        if (hasName(*entry->element, name.text, uri)) {
            return entry->element;
        }
    }
    return nullptr;
}

const DocumentNode* ChildSteps::first(const DocumentNode& context, const char16_t* name,
                                      const char16_t* uri) {
    return namedFrom(firstElement(context), name, uri);
}

const DocumentNode* ChildSteps::next(const DocumentNode& found, const char16_t* name,
                                     const char16_t* uri) {
    return namedFrom(nextElement(found), name, uri);
}

} // namespace Corvid::XMLBuilder
