#pragma once

#include "host/dictionary/AbstractMetaAttributeVisitor.h"

namespace Corvid::MetaMetadata {
class MetaElement;
}

namespace Corvid::XMLBuilder {

/// Finds the definition behind an element.
class FromXMLMetaAttributeVisitor : public MetaMetadata::AbstractMetaAttributeVisitor {
public:
    void visit(const MetaMetadata::UnknownAttribute& attribute) override;
    void visit(const MetaMetadata::MisplacedAttribute& attribute) override;
    void visit(const MetaMetadata::MetaAttribute& attribute) override;

    /// The definition; null for an unknown property. Belongs to the dictionary.
    const MetaMetadata::MetaElement* metaElement() const noexcept { return metaElement_; }
    /// The number by which the properties of a set are ordered, as text; null but for a property
    /// of the set's class.
    const unsigned short* schemaIndex() const noexcept { return schemaIndex_; }

private:
    const MetaMetadata::MetaElement* metaElement_ = nullptr;
    const unsigned short* schemaIndex_ = nullptr;
};

} // namespace Corvid::XMLBuilder
