#pragma once

#include "host/dictionary/AbstractMetaAttribute.h"
#include "host/types/IdentifierTypes.h"

namespace Corvid::MetaMetadata {

/// A property of which no more is known than its local tag.
class CORVID_EXPORT UnknownAttribute : public AbstractMetaAttribute {
public:
    /// Why the property is taken as unknown.
    enum Reason : unsigned int {
        unknownLabel = 0,    ///< no dictionary entry has its label
        tagWithoutLabel = 1, ///< neither primer nor dictionary knows its local tag
        unfitValue = 2,      ///< the dictionary knows it, but the bytes do not fit its type
    };

    UnknownAttribute(const Types::LocalTag& localTag, Reason reason)
        : AbstractMetaAttribute({AttributeFacts::Kind::unknown, false, nullptr, localTag.value(),
                                 reason == unfitValue}),
          localTag_(localTag), reason_(reason) {}
    ~UnknownAttribute() override;

    void accept(AbstractMetaAttributeVisitor& visitor) const override;

    /// The tag that the property bears in its partition.
    const Types::LocalTag& localTag() const noexcept { return localTag_; }
    Reason reason() const noexcept { return reason_; }

private:
    Types::LocalTag localTag_;
    Reason reason_;
};

} // namespace Corvid::MetaMetadata
