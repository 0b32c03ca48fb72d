#pragma once

#include "host/base/KeyedHash.h"
#include "host/types/IdentifierTypes.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory_resource>
#include <string_view>
#include <vector>

namespace Corvid::XMLBuilder {

/// What the InstanceUIDs of a partition have to do with the identifiers of the document.
enum class WrittenIdentifiers : unsigned char {
    replaced, ///< every set gets an InstanceUID that nobody else has
    kept,     ///< a written identifier is the InstanceUID, wherever it is the text of one
};

/// The identifiers of one document, as they are written there, and the InstanceUIDs that stand for
/// them in the partition. A reference and its target meet here, whichever is read first.
class InstanceNameTable {
public:
    struct Entry {
        std::u16string_view written;
        Types::UUID identifier;
    };
    using Entries = std::deque<Entry>;

    /// @throws IOError  the system's random source gives nothing.
    explicit InstanceNameTable(WrittenIdentifiers written = WrittenIdentifiers::replaced);
    InstanceNameTable(const InstanceNameTable&) = delete;
    InstanceNameTable& operator=(const InstanceNameTable&) = delete;

    /// The InstanceUID of a written identifier. If it has none yet, it gets itself where those that
    /// are written are kept, else the one that make() returns.
    template <class Make> const Types::UUID& findOrAdd(const char16_t* written, Make make) {
        const std::u16string_view name = written;
        const auto hash = static_cast<std::uint32_t>(hash_(name));
        if (const Types::UUID* const known = find(name, hash)) {
            return *known;
        }
        Types::UUID identifier;
        if (written_ == WrittenIdentifiers::replaced || !parse(written, identifier)) {
            identifier = make();
        }
        return add(name, hash, identifier);
    }

    /// In the order in which they came up.
    Entries::const_iterator begin() const noexcept { return entries_.begin(); }
    Entries::const_iterator end() const noexcept { return entries_.end(); }
    std::size_t size() const noexcept { return entries_.size(); }

private:
    /// Where an entry is found by the hash of its name, or by those that follow, up to a free one.
    /// The nodes of a std::unordered_map lie all over the memory, and nearly every look-up waits
    /// for two of them.
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t number = 0; ///< of the entry, from 1; 0 where the slot is free
    };

    /// @return false where the text is not that of an identifier, which stays as it was.
    static bool parse(const char16_t* text, Types::UUID& identifier);

    const Types::UUID* find(std::u16string_view name, std::uint32_t hash) const;
    const Types::UUID& add(std::u16string_view name, std::uint32_t hash,
                           const Types::UUID& identifier);
    void widen();

    WrittenIdentifiers written_;
    KeyedHash hash_;
    Entries entries_;
    std::vector<Slot> slots_; ///< a power of two of them, at least half of them free
    std::pmr::monotonic_buffer_resource texts_;
};

} // namespace Corvid::XMLBuilder
