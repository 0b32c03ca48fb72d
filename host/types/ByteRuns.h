#pragma once

#include "host/klv/Value.h"
#include "host/types/DataType.h"

namespace Corvid::Types {

/// A value of any number of bytes. Files give up to 65535, the most that a local set's property can
/// have; a value made otherwise may have more, but is not taken into a file.
class CORVID_EXPORT ByteRun : public SimpleDataType {
public:
    /// The most that the two bytes of a property's length can hold.
    static constexpr std::size_t greatestSize = 0xFFFF;

    static bool fits(ByteView bytes) noexcept { return bytes.size <= greatestSize; }

    const u8* rawBuffer() const override { return bytes_.data(); }
    u16 serializedSize() const override { return static_cast<u16>(bytes_.size()); }
    std::size_t byteCount() const override { return bytes_.size(); }

protected:
    explicit ByteRun(ByteView bytes) : bytes_(bytes.data, bytes.data + bytes.size) {}

    Templates::vector<u8> bytes_;
};

/// A run of bytes.
class CORVID_EXPORT DataStream : public Visitable<DataStream, ByteRun> {
public:
    explicit DataStream(ByteView bytes) : Visitable(bytes) {}
    DataStream(const u8* bytes, u32 length) : DataStream(ByteView{bytes, length}) {}
};

/// A run of bytes of which XML gives nothing back: there is no reader for this type.
class CORVID_EXPORT DataValue : public Visitable<DataValue, ByteRun> {
public:
    explicit DataValue(ByteView bytes) : Visitable(bytes) {}
};

/// The bytes of a value whose type is not known.
class CORVID_EXPORT Unknown : public Visitable<Unknown, ByteRun> {
public:
    explicit Unknown(ByteView bytes) : Visitable(bytes) {}
    explicit Unknown(KLV::Value& value) : Unknown(ByteView{value.begin(), value.size()}) {}
};

} // namespace Corvid::Types
