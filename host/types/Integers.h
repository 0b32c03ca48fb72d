#pragma once

#include "host/types/FixedBytes.h"

namespace Corvid::Types {

/// A whole number of the width of Number.
template <class Number> class IntegerValue : public FixedBytes<sizeof(Number)> {
public:
    IntegerValue(Number number) noexcept { this->putAt(0, number); }
    explicit IntegerValue(ByteView bytes) noexcept : FixedBytes<sizeof(Number)>(bytes) {}

    Number value() const noexcept { return this->template numberAt<Number>(0); }
};

// One row per type: an alias would not do, because a visitor distinguishes the types.
#define CORVID_INTEGER(Class, Number)                                                              \
    class CORVID_EXPORT Class : public Visitable<Class, IntegerValue<Number>> {                    \
    public:                                                                                        \
        using Visitable::Visitable;                                                                \
    }
CORVID_INTEGER(UInt8, u8);
CORVID_INTEGER(UInt16, u16);
CORVID_INTEGER(UInt32, u32);
CORVID_INTEGER(UInt64, u64);
CORVID_INTEGER(Int8, signed char);
CORVID_INTEGER(Int16, short);
CORVID_INTEGER(Int32, int);
CORVID_INTEGER(Int64, int64);
#undef CORVID_INTEGER

/// A point on a track, in edit units.
class CORVID_EXPORT Position : public Visitable<Position, Int64> {
public:
    using Visitable::Visitable;
};

/// A duration, in edit units; -1 where it is not known.
class CORVID_EXPORT Length : public Visitable<Length, Int64> {
public:
    using Visitable::Visitable;
};

/// The scanning direction of a picture, as a code.
class CORVID_EXPORT Orientation : public Visitable<Orientation, UInt8> {
public:
    using Visitable::Visitable;
};

/// The underlying signal standard of a picture, as a code.
class CORVID_EXPORT SignalStandard : public Visitable<SignalStandard, UInt8> {
public:
    using Visitable::Visitable;
};

/// True or false in one byte. Only 0 and 1 are taken from a file: any other byte could not be
/// given back.
class CORVID_EXPORT Boolean : public Visitable<Boolean, FixedBytes<1>> {
public:
    explicit Boolean(bool value) noexcept { bytes_[0] = value ? 1 : 0; }
    explicit Boolean(ByteView bytes) noexcept : Visitable(bytes) {}
    static bool fits(ByteView bytes) noexcept { return bytes.size == 1 && bytes.data[0] <= 1; }

    bool value() const noexcept { return bytes_[0] != 0; }
};

/// One UTF-16 code unit.
class CORVID_EXPORT UTF16 : public Visitable<UTF16, FixedBytes<2>> {
public:
    explicit UTF16(u16 unit) noexcept { putAt(0, unit); }
    explicit UTF16(ByteView bytes) noexcept : Visitable(bytes) {}

    u16 value() const noexcept { return numberAt<u16>(0); }
};

} // namespace Corvid::Types
