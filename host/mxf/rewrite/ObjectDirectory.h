#pragma once

#include "host/mxf/rewrite/HeaderLayout.h"

namespace Corvid::mxf {

/// The root of the objects that some editing systems keep in header metadata. It says where the
/// directory of the objects is.
CORVID_EXPORT bool isObjectRoot(const KLV::Key& key) noexcept;
/// The directory: which set is at which offset from the file's first byte.
CORVID_EXPORT bool isObjectDirectory(const KLV::Key& key) noexcept;

/// The directory of the objects in one copy of header metadata. It must follow every set that
/// moves.
///
/// Its value is a count (8 bytes), the size of an entry (1 byte, 25), and the entries: InstanceUID,
/// offset (8 bytes) and flags (1 byte) of each set. The root set has the directory's offset in the
/// last 8 bytes of one property.
class CORVID_EXPORT ObjectDirectory {
public:
    struct Entry {
        std::size_t item = 0; ///< the set's number in the layout
        Types::UUID instance;
        Types::u8 flags = 0;
    };

    /// Where the copy has none, there is nothing to follow: then it is empty.
    /// @throws InvalidFormat  the directory is not true, so its meaning is not certain: it lists
    ///                        sets where they are not, has no root, or the file has a run-in.
    static std::optional<ObjectDirectory> find(const HeaderLayout& layout);

    std::size_t item() const noexcept { return item_; } ///< the directory's number in the layout
    std::size_t root() const noexcept { return root_; } ///< the root set's
    const Templates::vector<Entry>& entries() const noexcept { return entries_; }
    /// Where in the root set's value the 8 bytes of the directory's offset are.
    std::size_t offsetInRoot() const noexcept { return offsetInRoot_; }

    static std::size_t valueSize(std::size_t entries) noexcept;
    /// Writes the number and the size of the entries.
    static void beginValue(Bytes& value, std::size_t entries);
    static void addEntry(Bytes& value, const Types::UUID& instance, std::uint64_t offset,
                         Types::u8 flags);

private:
    ObjectDirectory() = default;
    void readEntries(const HeaderLayout& layout);
    void readRoot(const HeaderLayout& layout);

    std::size_t item_ = 0;
    std::size_t root_ = 0;
    std::size_t offsetInRoot_ = 0;
    Templates::vector<Entry> entries_;
};

} // namespace Corvid::mxf
