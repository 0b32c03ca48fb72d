#include "XMLBuilder/reader/ExtensionTags.h"

#include "XMLBuilder/format/HexBytes.h"
#include "XMLBuilder/format/Namespaces.h"
#include "XMLBuilder/reader/ChildSteps.h"
#include "host/base/Exceptions.h"
#include "host/mxf/LocalSet.h"
#include "host/xmlutils/XmlText.h"

#include <algorithm>
#include <string_view>

namespace Corvid::XMLBuilder {

namespace {

/// The key of a dark set; zeros where it can't be read, which is refused where the set is read.
KLV::Key keyOf(const DocumentNode& set) {
    try {
        return KLV::Key(XMLUtils::fromXml(attributeValue(set, Names::key)),
                        Types::dottedHexadecimal);
    } catch (const Exceptions::InvalidFormat&) {
        return {};
    }
}

Types::LocalTag tagFrom(const char16_t* text) {
    return Types::LocalTag(XMLUtils::fromXml(text), Types::dottedHexadecimal);
}

} // namespace

Types::LocalTag ExtensionTags::of(const DocumentNode& extension) {
    if (const char16_t* tag = attributeValue(extension, Names::staticLocalTag); *tag != 0) {
        return tags_.tagForUnknown(tagFrom(tag));
    }
    const Types::UniversalLabel label(
        XMLUtils::fromXml(attributeValue(extension, Names::universalLabel)),
        Types::dottedHexadecimal);
    // Most documents have no such label, and then nobody needs to know what they name.
    if (!namedAreKept_) {
        namedAreKept_ = true;
        if (queries_ != nullptr) {
            queries_->nameTags(*this);
        }
    }
    return tags_.findOrGenerate(label);
}

void ExtensionTags::keepTagOf(const DocumentNode& extension) {
    if (const char16_t* const tag = attributeValue(extension, Names::staticLocalTag); *tag != 0) {
        keep(tag);
    }
}

void ExtensionTags::keepTagsIn(const DocumentNode& darkSet) {
    const char16_t* const value = firstValue(darkSet);
    const std::u16string_view text = value;
    // Bytes that can't be read are refused where the set is read.
    if (text.empty() || text.size() % 2 != 0 ||
        !std::all_of(text.begin(), text.end(), isHexDigit)) {
        return;
    }
    const FieldBytes bytes = decodeHex(value);
    mxf::LocalSet properties(keyOf(darkSet), {bytes.data(), bytes.size()});
    while (const auto property = properties.next()) {
        tags_.keep(Types::LocalTag(property->tag));
    }
}

void ExtensionTags::keep(const char16_t* tag) {
    try {
        tags_.keep(tagFrom(tag));
    } catch (const Exceptions::InvalidFormat&) {
        // The element is refused where it is read, if it is.
    }
}

} // namespace Corvid::XMLBuilder
