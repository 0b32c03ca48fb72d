#pragma once

#include "host/metadata/Elements.h"

namespace Corvid::Metadata {

/// What an element holds, whatever its kind: one value or reference, or a list of them.
class CORVID_EXPORT ElementItems {
public:
    /// @param element  must outlive the object. Null holds nothing.
    explicit ElementItems(const Element* element);

    Types::u32 size() const noexcept;
    /// @param index  below size().
    const Types::SimpleDataType& at(Types::u32 index) const noexcept;
    /// An item that is a reference; null for values. Likewise.
    const Types::Reference* reference(Types::u32 index) const noexcept;
    /// Whether it is a list, however many items it has.
    bool isList() const noexcept { return list_ != nullptr || references_ != nullptr; }
    /// The list of values; null for what is none, and for references.
    const Types::Collection* values() const noexcept { return list_; }

private:
    struct Contents;

    const Types::SimpleDataType* simple_ = nullptr;
    const Types::Reference* reference_ = nullptr;
    const Types::Collection* list_ = nullptr;
    const ReferenceCollectionElement* references_ = nullptr;
};

} // namespace Corvid::Metadata
