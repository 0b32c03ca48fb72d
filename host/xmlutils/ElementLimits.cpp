#include "host/xmlutils/ElementLimits.h"

namespace Corvid::XMLUtils {

namespace {

std::string expected(unsigned int limit) { return ", expected at most " + std::to_string(limit); }

} // namespace

void ElementLimits::startDocument() {
    open_.clear();
    names_.clear();
}

std::string ElementLimits::startElement(std::size_t attributes, bool isOpen) {
    const std::size_t depth = open_.size() + 1;
    if (depth > maximumElementDepth) {
        return " is " + std::to_string(depth) + " deep" + expected(maximumElementDepth);
    }
    const std::size_t attributesOpen = attributes + (open_.empty() ? 0 : open_.back());
    if (attributesOpen > maximumOpenAttributes) {
        return tooManyAttributes(attributesOpen);
    }
    if (isOpen) {
        open_.push_back(attributesOpen);
    }
    return {};
}

std::string ElementLimits::useName(unsigned int uri, std::initializer_list<const char16_t*> parts) {
    constexpr unsigned int unitBits = 16;
    name_ = {static_cast<char16_t>(uri >> unitBits), static_cast<char16_t>(uri)};
    for (const char16_t* part : parts) {
        name_ += part == nullptr ? u"" : part;
        name_ += u'\0'; // which no part has
    }
    names_.insert(hash_(name_));
    return names_.size() <= maximumNames
               ? std::string()
               : ": " + std::to_string(names_.size()) +
                     " different names of elements and attributes so far" + expected(maximumNames);
}

std::string ElementLimits::tooManyAttributes(std::size_t count) {
    return " and those around it have " + std::to_string(count) + " attributes" +
           expected(maximumOpenAttributes);
}

} // namespace Corvid::XMLUtils
