#pragma once

#include "Corvid/Export.h"
#include "host/base/Templates.h"
#include "host/dataio/DataSink.h"
#include "host/types/Visitors.h"

#include <cstddef>
#include <cstdint>

namespace Corvid::Types {

using u8 = std::uint8_t;
using u16 = unsigned short;
using u32 = std::uint32_t;
using u64 = std::uint64_t;
using int64 = std::int64_t;

/// Borrowed bytes, as they are in a KLV value.
struct ByteView {
    const u8* data = nullptr;
    std::size_t size = 0;
};

/// What every value has: its visit, and its bytes as they are in a KLV value (SMPTE ST 377-1,
/// numbers big-endian). Values are copied and do not change once they are handed over.
class CORVID_EXPORT DataType {
public:
    virtual ~DataType();

    /// Calls the one overload of visit that takes the most derived type, with *this.
    virtual void accept(Visitors::NonConstVisitor& visitor) = 0;
    virtual void accept(Visitors::Visitor& visitor) const = 0;

    /// Writes the value's bytes.
    virtual void serialize(DataIO::DataSink& sink) const;
    /// The value's bytes, byteCount() of them; valid while the value lives unchanged.
    virtual const u8* rawBuffer() const = 0;
    /// The number of the value's bytes; of a value with more than 65535, which no property of a
    /// file can hold, the low 16 bits of that number.
    virtual u16 serializedSize() const = 0;
    /// The number of the value's bytes in full.
    virtual std::size_t byteCount() const;

    // Values cross library boundaries: their memory comes from where every library can free it.
    static void* operator new(std::size_t size) { return Platform::malloc_alloc::allocate(size); }
    static void operator delete(void* memory, std::size_t size) noexcept {
        Platform::malloc_alloc::deallocate(memory, size);
    }

protected:
    DataType() = default;
    DataType(const DataType&) = default;
    DataType& operator=(const DataType&) = default;
};

/// A value that is no collection.
class CORVID_EXPORT SimpleDataType : public DataType {
public:
    using CloneResult = SimpleDataType;
    virtual Templates::auto_ptr<SimpleDataType> clone() const = 0;
    ~SimpleDataType() override;

protected:
    SimpleDataType() = default;
    SimpleDataType(const SimpleDataType&) = default;
    SimpleDataType& operator=(const SimpleDataType&) = default;
};

/// The bodies of accept and clone of the class Self, which derives from Visitable<Self, Base>.
template <class Self, class Base> class Visitable : public Base {
public:
    using Base::Base;

    void accept(Visitors::NonConstVisitor& visitor) override { visitor.visit(self()); }
    void accept(Visitors::Visitor& visitor) const override { visitor.visit(self()); }
    Templates::auto_ptr<typename Base::CloneResult> clone() const override {
        return Templates::auto_ptr<typename Base::CloneResult>(new Self(self()));
    }

private:
    Self& self() noexcept { return static_cast<Self&>(*this); }
    const Self& self() const noexcept { return static_cast<const Self&>(*this); }
};

} // namespace Corvid::Types
