#include "XMLBuilder/reader/values/Parts.h"

#include "XMLBuilder/reader/nodes/ChildSteps.h"
#include "XMLBuilder/reader/nodes/NodeText.h"

namespace Corvid::XMLBuilder {

const DocumentNode* Parts::first(const char16_t* qualified) const {
    return ChildSteps::first(*parent_, Names::localPart(qualified), uri_);
}

const DocumentNode* Parts::next(const DocumentNode& found, const char16_t* qualified) const {
    return ChildSteps::next(found, Names::localPart(qualified), uri_);
}

const char16_t* Parts::text(const char16_t* qualified) {
    const DocumentNode* const part = first(qualified);
    if (part != nullptr && isStrict_) {
        return texts_.emplace_back(trimmed(Content(*part).text())).c_str();
    }
    return part == nullptr ? u"" : firstValue(*part);
}

} // namespace Corvid::XMLBuilder
