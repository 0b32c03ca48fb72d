#pragma once

#include "host/dictionary/AbstractMetaAttribute.h"

namespace Corvid::MetaMetadata {

class MetaElement;

/// A property that the dictionary knows, but that has no place in the set where it is.
class CORVID_EXPORT MisplacedAttribute : public AbstractMetaAttribute {
public:
    /// @param metaElement  must outlive the object.
    explicit MisplacedAttribute(const MetaElement& metaElement) noexcept
        : AbstractMetaAttribute({AttributeFacts::Kind::misplaced, false, &metaElement}) {}
    ~MisplacedAttribute() override;

    void accept(AbstractMetaAttributeVisitor& visitor) const override;

    const MetaElement& metaElement() const noexcept { return *facts().definition; }
};

} // namespace Corvid::MetaMetadata
