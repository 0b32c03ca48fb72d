#pragma once

#include "host/dictionary/AbstractMetaAttributeVisitor.h"
#include "host/dictionary/AttributeRequiredStatus.h"
#include "host/types/IdentifierTypes.h"

namespace Corvid::MetaMetadata {
class MetaElement;
}

namespace Corvid::XMLBuilder {

/// Reads what the dictionary says of an element.
class ToXMLMetaAttributeVisitor : public MetaMetadata::AbstractMetaAttributeVisitor {
public:
    enum class Kind : int {
        placed = 0,    ///< a property of the set's class
        misplaced = 1, ///< a property of other classes
        unknown = 2,   ///< no property that the dictionary knows
    };

    void visit(const MetaMetadata::UnknownAttribute& attribute) override;
    void visit(const MetaMetadata::MisplacedAttribute& attribute) override;
    void visit(const MetaMetadata::MetaAttribute& attribute) override;

    /// The definition; null for an unknown property. Belongs to the dictionary.
    const MetaMetadata::MetaElement* metaElement() const noexcept { return metaElement_; }
    /// The decimal number by which the properties of a set are ordered, or null: only the
    /// properties of the set's class have one.
    const unsigned short* schemaIndex() const noexcept { return schemaIndex_; }
    /// The local tag of an unknown property.
    const Types::LocalTag& localTag() const noexcept { return localTag_; }
    Kind kind() const noexcept { return kind_; }
    /// True for a property of the set's class that an encoder must write.
    bool isRequired() const noexcept { return required_; }

private:
    const MetaMetadata::MetaElement* metaElement_ = nullptr;
    const unsigned short* schemaIndex_ = nullptr;
    Types::LocalTag localTag_;
    Kind kind_ = Kind::unknown;
    bool required_ = false;
};

} // namespace Corvid::XMLBuilder
