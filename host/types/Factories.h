#pragma once

#include "host/types/Identifiers.h"
#include "host/types/Types.h"

namespace Corvid::Types::Factories {

/// Makes a value of the type from its bytes in a KLV value.
/// @return null where the bytes do not fit the type, and for types that are no simple values.
CORVID_EXPORT Templates::auto_ptr<SimpleDataType> fromBytes(Identifiers::Identifier type,
                                                            ByteView bytes);

/// Makes an array or a batch from its bytes in a KLV value: item count, item size, items.
/// @param kind  Array or Batch.
/// @param item  the type of the items.
/// @return null where the bytes do not fit: count and item size must account for every byte, an
///         item must fit its type. The item size of an empty collection may be anything.
CORVID_EXPORT Templates::auto_ptr<Collection> collectionFromBytes(Identifiers::Identifier kind,
                                                                  Identifiers::Identifier item,
                                                                  ByteView bytes);

/// The items of an array's or batch's bytes, without their head.
struct CollectionBytes {
    u32 count = 0;
    u32 itemSize = 0; ///< bytes
    const u8* items = nullptr;

    ByteView item(u32 index) const noexcept {
        return {items + std::size_t{index} * itemSize, itemSize};
    }
};

/// Checks the head of an array or batch against its length.
/// @return false where it lies.
CORVID_EXPORT bool readCollectionHead(ByteView bytes, CollectionBytes& result) noexcept;

} // namespace Corvid::Types::Factories
