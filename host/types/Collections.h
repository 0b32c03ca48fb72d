#pragma once

#include "host/types/DataType.h"

namespace Corvid::Types {

/// Like items one after the other. In a KLV value: their number (u32), their size in bytes (u32),
/// then the items.
class CORVID_EXPORT Collection : public DataType {
public:
    using CloneResult = Collection;
    virtual Templates::auto_ptr<Collection> clone() const = 0;

    Collection(Collection&&) = default;
    ~Collection() override;

    /// The number of items.
    u32 size() const noexcept { return static_cast<u32>(items_.size()); }
    /// @param index  below size().
    const SimpleDataType& at(u32 index) const noexcept { return *items_[index]; }
    /// The size that each item has in a KLV value, in bytes.
    int itemSize() const noexcept { return itemSize_; }

    /// Appends an item. A null pointer appends nothing.
    void add(Templates::auto_ptr<SimpleDataType> item);
    /// @param index  below size().
    void remove(u32 index);

    void serialize(DataIO::DataSink& sink) const override;
    u16 serializedSize() const override;
    std::size_t byteCount() const override;
    const u8* rawBuffer() const override;

protected:
    explicit Collection(int itemSize) noexcept : itemSize_(itemSize) {}
    Collection(const Collection& other);

private:
    Templates::vector<Templates::auto_ptr<SimpleDataType>> items_;
    int itemSize_;
    mutable Templates::vector<u8> buffer_; ///< made by rawBuffer()
};

/// Like items whose order means something.
class CORVID_EXPORT Array : public Visitable<Array, Collection> {
public:
    /// @param itemSize  bytes.
    explicit Array(int itemSize) noexcept : Visitable(itemSize) {}
};

/// Like items whose order means nothing.
class CORVID_EXPORT Batch : public Visitable<Batch, Collection> {
public:
    /// @param itemSize  bytes.
    explicit Batch(int itemSize) noexcept : Visitable(itemSize) {}
};

} // namespace Corvid::Types
