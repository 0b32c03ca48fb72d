#pragma once

#include "host/klv/Key.h"
#include "host/klv/Value.h"

namespace Corvid::Metadata {

/// A set that is kept as its bytes, because the dictionary does not know its key or its value does
/// not parse.
class CORVID_EXPORT DarkMetadataSet {
public:
    /// @param berLength  the octets of the set's length field.
    DarkMetadataSet(const KLV::Key& key, unsigned char berLength, KLV::Value& value);

    const KLV::Key& key() const noexcept { return key_; }
    unsigned char berLength() const noexcept { return berLength_; }
    /// The value's bytes, or null where there are none to speak of.
    const DataIO::Slice* value() const noexcept { return &value_; }

    static void* operator new(std::size_t size) { return Platform::malloc_alloc::allocate(size); }
    static void operator delete(void* memory, std::size_t size) noexcept {
        Platform::malloc_alloc::deallocate(memory, size);
    }

private:
    KLV::Key key_;
    unsigned char berLength_;
    DataIO::Slice value_;
};

} // namespace Corvid::Metadata
