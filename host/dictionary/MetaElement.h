#pragma once

#include "host/dictionary/MetaDefinition.h"
#include "host/types/IdentifierTypes.h"
#include "host/types/Identifiers.h"

namespace Corvid::MetaMetadata {

/// The definition of a property: its label, local tag, type and name.
class CORVID_EXPORT MetaElement : public MetaDefinition {
public:
    MetaElement(const Names& names, const Types::UniversalLabel& label,
                unsigned short staticLocalTag, Types::Identifiers::Identifier dataType) noexcept
        : MetaDefinition(names), label_(label), staticLocalTag_(staticLocalTag),
          dataType_(dataType) {}
    ~MetaElement() override;

    /// The label as registered, version byte included.
    const Types::UniversalLabel& label() const noexcept { return label_; }

    /// The local tag that the standard gives the property for good; 0 where each file gives one.
    unsigned short staticLocalTag() const noexcept { return staticLocalTag_; }

    /// The type of the value. Array or Batch for a collection, which then is a
    /// MetaCollectionElement.
    Types::Identifiers::Identifier dataType() const noexcept { return dataType_; }

    /// True for a MetaCollectionElement.
    bool isCollection() const noexcept {
        return dataType_ == Types::Identifiers::Array || dataType_ == Types::Identifiers::Batch;
    }

private:
    Types::UniversalLabel label_;
    unsigned short staticLocalTag_;
    Types::Identifiers::Identifier dataType_;
};

} // namespace Corvid::MetaMetadata
