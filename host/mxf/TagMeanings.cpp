#include "host/mxf/TagMeanings.h"

#include "host/dictionary/MetaMetadataSet.h"
#include "host/dictionary/MisplacedAttribute.h"
#include "host/metadata/MetadataSet.h"

namespace Corvid::mxf {

namespace {

using MetaMetadata::UnknownAttribute;

Metadata::Element::Attribute makeUnknown(Types::u16 tag, UnknownAttribute::Reason reason) {
    return Metadata::Element::Attribute(new UnknownAttribute(Types::LocalTag(tag), reason));
}

} // namespace

const Metadata::Element::Attribute* TagMeaning::attributeIn(
    const MetaMetadata::MetaMetadataSet& set) {
    if (lastClass != &set) {
        lastAttribute = label == nullptr ? nullptr : set.find(*label);
        lastClass = &set;
    }
    return lastAttribute;
}

std::string TagMeaning::name() const {
    const auto* text = definition == nullptr ? nullptr : definition->attribute("XMLTagName");
    return text == nullptr ? std::string() : Platform::toUtf8(text);
}

TagMeaning& TagMeanings::of(Types::u16 tag) {
    const auto [place, isNew] = meanings_.try_emplace(tag);
    TagMeaning& meaning = place->second;
    if (!isNew) {
        return meaning;
    }
    const Types::LocalTag localTag(tag);
    meaning.tag = tag;
    meaning.inPrimer = dictionary_.find(localTag, false) != nullptr;
    meaning.label = dictionary_.find(localTag, true);
    if (meaning.label != nullptr) {
        meaning.isInstanceUID = Metadata::Structural::isInstanceUID(*meaning.label);
        meaning.identifies = Metadata::Structural::identifies(*meaning.label);
        meaning.definition = dictionary_.dictionary()->findElement(*meaning.label);
    }
    if (meaning.definition != nullptr) {
        meaning.misplaced =
            Metadata::Element::Attribute(new MetaMetadata::MisplacedAttribute(*meaning.definition));
    }
    meaning.unknown = makeUnknown(tag, meaning.label == nullptr ? UnknownAttribute::tagWithoutLabel
                                                                : UnknownAttribute::unknownLabel);
    meaning.unfit = makeUnknown(tag, UnknownAttribute::unfitValue);
    return meaning;
}

} // namespace Corvid::mxf
