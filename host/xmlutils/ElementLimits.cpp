#include "host/xmlutils/ElementLimits.h"

#include "host/xmlutils/LoadDocument.h"

namespace Corvid::XMLUtils {

namespace {

/// FNV-1a over the code units, which goes on from another hash.
std::uint64_t hashOf(const char16_t* text, std::uint64_t hash) noexcept {
    for (; text != nullptr && *text != 0; ++text) {
        hash = (hash ^ *text) * 0x100000001B3U;
    }
    return hash;
}

std::string expected(unsigned int limit) { return ", expected at most " + std::to_string(limit); }

} // namespace

void ElementLimits::startDocument() {
    open_.clear();
    names_.clear();
}

std::string ElementLimits::startElement(std::size_t attributes, bool isOpen) {
    const std::size_t depth = open_.size() + 1;
    if (depth > maximumElementDepth) {
        return " stands " + std::to_string(depth) + " deep" + expected(maximumElementDepth);
    }
    const std::size_t attributesOpen = attributes + (open_.empty() ? 0 : open_.back());
    if (attributesOpen > maximumOpenAttributes) {
        return " and those around it have " + std::to_string(attributesOpen) + " attributes" +
               expected(maximumOpenAttributes);
    }
    if (isOpen) {
        open_.push_back(attributesOpen);
    }
    return {};
}

std::string ElementLimits::useName(unsigned int uri, std::initializer_list<const char16_t*> parts) {
    std::uint64_t hash = 0xCBF29CE484222325U ^ uri;
    for (const char16_t* part : parts) {
        hash = hashOf(u":", hashOf(part, hash));
    }
    names_.insert(hash);
    return names_.size() <= maximumNames
               ? std::string()
               : ": " + std::to_string(names_.size()) +
                     " different names of elements and attributes so far" + expected(maximumNames);
}

} // namespace Corvid::XMLUtils
