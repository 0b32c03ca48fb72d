#include "host/dictionary/Definitions.h"

#include "host/base/Exceptions.h"

namespace Corvid::MetaMetadata {

std::string toString(const Origin& origin) {
    if (origin.line == 0) {
        return "the dictionary that is extended";
    }
    return std::string(origin.text) + ":" + std::to_string(origin.line);
}

void refuse(const Origin& origin, const std::string& reason) {
    throw Exceptions::InvalidDictionary(toString(origin) + ": " + reason, CORVID_HERE);
}

std::string Definitions::nameOf(const SetEntry& set) const {
    return namespaces[set.space].prefix + ":" + set.tagName;
}

std::string Definitions::nameOf(const ElementEntry& element) const {
    return namespaces[element.space].prefix + ":" + element.tagName;
}

} // namespace Corvid::MetaMetadata
