#include "XMLBuilder/reader/ExtensionTags.h"

#include "XMLBuilder/format/HexBytes.h"
#include "XMLBuilder/format/Namespaces.h"
#include "XMLBuilder/reader/nodes/ChildSteps.h"
#include "host/base/Exceptions.h"
#include "host/mxf/LocalSet.h"
#include "host/xmlutils/XmlText.h"

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

template <class Identifier> Identifier identifierFrom(std::u16string_view text) {
    const Utf16Text copy(text.begin(), text.end());
    return Identifier(copy.c_str(), Types::dottedHexadecimal);
}

} // namespace

Types::LocalTag ExtensionTags::of(std::u16string_view tag, std::u16string_view label) {
    if (!tag.empty()) {
        return tags_.tagForUnknown(identifierFrom<Types::LocalTag>(tag));
    }
    const auto known = identifierFrom<Types::UniversalLabel>(label);
    // Most documents have no such label, and then nobody needs to know what they name.
    if (!namedAreKept_) {
        namedAreKept_ = true;
        if (queries_ != nullptr) {
            queries_->nameTags(*this);
        }
    }
    return tags_.findOrGenerate(known);
}

void ExtensionTags::keepTag(std::u16string_view tag) {
    if (tag.empty()) {
        return;
    }
    try {
        tags_.keep(identifierFrom<Types::LocalTag>(tag));
    } catch (const Exceptions::InvalidFormat&) {
        // The element is refused where it is read, if it is.
    }
}

void ExtensionTags::keepTagsIn(const DocumentNode& darkSet) {
    const char16_t* const value = firstValue(darkSet);
    // Bytes that can't be read are refused where the set is read.
    if (*value == 0 || !isHex(value)) {
        return;
    }
    const FieldBytes bytes = decodeHex(value);
    keepTagsIn(keyOf(darkSet), {bytes.data(), bytes.size()});
}

void ExtensionTags::keepTagsIn(const KLV::Key& key, Types::ByteView bytes) {
    mxf::LocalSet properties(key, bytes);
    while (const auto property = properties.next()) {
        tags_.keep(Types::LocalTag(property->tag));
    }
}

} // namespace Corvid::XMLBuilder
