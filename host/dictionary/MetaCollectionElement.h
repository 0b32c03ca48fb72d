#pragma once

#include "host/dictionary/MetaElement.h"

namespace Corvid::MetaMetadata {

/// The definition of a property that holds a collection of like items.
class CORVID_EXPORT MetaCollectionElement : public MetaElement {
public:
    MetaCollectionElement(const Names& names, const Types::UniversalLabel& label,
                          unsigned short staticLocalTag, Types::Identifiers::Identifier dataType,
                          Types::Identifiers::Identifier dataSubType) noexcept
        : MetaElement(names, label, staticLocalTag, dataType), dataSubType_(dataSubType) {}
    ~MetaCollectionElement() override;

    /// The type of the items; StrongReference or WeakReference for a collection of references.
    Types::Identifiers::Identifier dataSubType() const noexcept { return dataSubType_; }

private:
    Types::Identifiers::Identifier dataSubType_;
};

} // namespace Corvid::MetaMetadata
