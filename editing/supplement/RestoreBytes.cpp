#include "editing/supplement/RestoreBytes.h"

#include "editing/StoredBytes.h"
#include "editing/supplement/Filling.h"
#include "editing/supplement/ToldValue.h"
#include "host/dictionary/MisplacedAttribute.h"

namespace Corvid::Editing {

namespace {

using Metadata::Element;
using XMLBuilder::EmptyParts;

/// What a document that is read with a supplement says of bytes as the value of such an element.
/// @return false where the bytes can't be its value.
bool tellOf(const Element::Attribute& attribute, const std::string& bytes,
            std::optional<std::string>& told) {
    const auto element = Metadata::createElement(attribute);
    if (!element->parse(viewOf(bytes))) {
        return false;
    }
    told = bytesFromDocument(*element, EmptyParts::values);
    return true;
}

} // namespace

bool restoreBytes(Element& element, const std::string& bytes) {
    std::optional<std::string> told;
    const auto found = bytesFromDocument(element, EmptyParts::values);
    return tellOf(element.metaAttribute(), bytes, told) && told &&
           *told == (found ? *found : bytesOf(element)) && element.parse(viewOf(bytes));
}

Element* insertBytes(Metadata::MetadataSet& set, const DocumentSupplement::Bytes& bytes,
                     const MetaMetadata::Dictionary& dictionary) {
    const PropertyAddress& property = bytes.property;
    const auto* const definition =
        property.label ? dictionary.findElement(*property.label) : nullptr;
    if (definition == nullptr) {
        return nullptr;
    }
    // A later one is not that of the class, even where the first does not fit its type.
    Element* element = property.nth == 0 ? set.find(*property.label) : nullptr;
    const bool isOwn = element != nullptr && element->isSkipped();
    const Element::Attribute attribute =
        isOwn ? element->metaAttribute()
              : Element::Attribute(new MetaMetadata::MisplacedAttribute(*definition));
    std::optional<std::string> told;
    if (!tellOf(attribute, bytes.bytes, told) || told) {
        return nullptr;
    }
    if (!isOwn) {
        element = &set.createInvalidElement(attribute);
    }
    element->parse(viewOf(bytes.bytes));
    return element;
}

} // namespace Corvid::Editing
