#pragma once

#include "host/dictionary/AbstractMetaAttribute.h"
#include "host/dictionary/AttributeRequiredStatus.h"

namespace Corvid::MetaMetadata {

class MetaElement;

/// A property that the definition of the set, or of one of its ancestors, lists.
class CORVID_EXPORT MetaAttribute : public AbstractMetaAttribute {
public:
    /// @param metaElement  must outlive the object, as everything in the same dictionary does.
    MetaAttribute(const MetaElement& metaElement, AttributeRequiredStatus::Status status) noexcept
        : AbstractMetaAttribute({AttributeFacts::Kind::placed,
                                 status <= AttributeRequiredStatus::encoderRequired, &metaElement}),
          status_(status) {}
    ~MetaAttribute() override;

    void accept(AbstractMetaAttributeVisitor& visitor) const override;

    const MetaElement& metaElement() const noexcept { return *facts().definition; }

    /// Who must write or understand the property in this set.
    AttributeRequiredStatus::Status requiredStatus() const noexcept { return status_; }

private:
    AttributeRequiredStatus::Status status_;
};

} // namespace Corvid::MetaMetadata
