#include "host/metadata/Element.h"

#include "host/base/Exceptions.h"
#include "host/dictionary/MetaCollectionElement.h"
#include "host/metadata/Elements.h"

namespace Corvid::Metadata {

namespace {

namespace Identifiers = Types::Identifiers;

bool isReference(Identifiers::Identifier type) {
    return type == Identifiers::StrongReference || type == Identifiers::WeakReference;
}

void requireAttribute(const Element::Attribute& attribute) {
    if (!attribute) {
        throw Exceptions::InvalidArgument("no attribute to make an element for, expected one",
                                          CORVID_HERE);
    }
}

template <class Kind> Templates::auto_ptr<Element> make(Element::Attribute attribute) {
    return Templates::auto_ptr<Element>(new Kind(std::move(attribute)));
}

} // namespace

Element::Element(Attribute attribute) : attribute_(std::move(attribute)) {
    requireAttribute(attribute_);
}

Element::~Element() = default;

const Element::Attribute& Element::metaAttribute() const noexcept { return attribute_; }

Templates::auto_ptr<Element> createElement(Element::Attribute attribute) {
    requireAttribute(attribute);
    const MetaMetadata::MetaElement* definition = attribute->facts().definition;
    if (definition == nullptr) {
        return make<SimpleElement>(std::move(attribute));
    }
    const Identifiers::Identifier type = definition->dataType();
    if (isReference(type)) {
        return make<ReferenceElement>(std::move(attribute));
    }
    if (type != Identifiers::Array && type != Identifiers::Batch) {
        return make<SimpleElement>(std::move(attribute));
    }
    const auto& collection = static_cast<const MetaMetadata::MetaCollectionElement&>(*definition);
    const bool ofReferences = isReference(collection.dataSubType());
    if (type == Identifiers::Array) {
        return ofReferences ? make<ReferenceArrayElement>(std::move(attribute))
                            : make<ArrayElement>(std::move(attribute));
    }
    return ofReferences ? make<ReferenceBatchElement>(std::move(attribute))
                        : make<BatchElement>(std::move(attribute));
}

} // namespace Corvid::Metadata
