#pragma once

#include "host/types/IdentifierTypes.h"

namespace Corvid::Types {

/// Names a set of the same partition by its InstanceUID.
class CORVID_EXPORT Reference : public SimpleDataType {
public:
    static constexpr std::size_t fixedSize = UUID::fixedSize;

    static bool fits(ByteView bytes) noexcept { return UUID::fits(bytes); }

    const UUID& uuid() const noexcept { return uuid_; }
    int size() const noexcept { return uuid_.size(); }
    Utf16Text toString() const { return uuid_.toString(dottedHexadecimal); }

    const u8* rawBuffer() const override { return uuid_.rawBuffer(); }
    u16 serializedSize() const override { return uuid_.serializedSize(); }

    /// True when the reference owns its target.
    virtual bool isStrong() const noexcept = 0;

protected:
    explicit Reference(const UUID& uuid) noexcept : uuid_(uuid) {}
    explicit Reference(ByteView bytes) noexcept : uuid_(bytes) {}
    /// @throws InvalidFormat  the text is no UUID in dotted hexadecimal form.
    explicit Reference(const u16* text) : uuid_(text, dottedHexadecimal) {}

private:
    UUID uuid_;
};

/// A reference that owns its target.
class CORVID_EXPORT StrongReference : public Visitable<StrongReference, Reference> {
public:
    explicit StrongReference(const UUID& uuid) noexcept : Visitable(uuid) {}
    explicit StrongReference(ByteView bytes) noexcept : Visitable(bytes) {}
    explicit StrongReference(const u16* text) : Visitable(text) {}
    bool isStrong() const noexcept override { return true; }
};

/// A reference to a set that another set owns.
class CORVID_EXPORT WeakReference : public Visitable<WeakReference, Reference> {
public:
    explicit WeakReference(const UUID& uuid) noexcept : Visitable(uuid) {}
    explicit WeakReference(ByteView bytes) noexcept : Visitable(bytes) {}
    explicit WeakReference(const u16* text) : Visitable(text) {}
    bool isStrong() const noexcept override { return false; }
};

} // namespace Corvid::Types
