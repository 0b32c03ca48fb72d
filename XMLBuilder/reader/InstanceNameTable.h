#pragma once

#include "host/base/KeyedHash.h"
#include "host/types/IdentifierTypes.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory_resource>
#include <string_view>
#include <unordered_map>

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
    explicit InstanceNameTable(WrittenIdentifiers written = WrittenIdentifiers::replaced)
        : written_(written) {}
    InstanceNameTable(const InstanceNameTable&) = delete;
    InstanceNameTable& operator=(const InstanceNameTable&) = delete;

    /// The InstanceUID of a written identifier. If it has none yet, it gets itself where those that
    /// are written are kept, else the one that make() returns.
    template <class Make> const Types::UUID& findOrAdd(const char16_t* written, Make make) {
        const Name name{hash_(written), written};
        const auto known = byName_.find(name);
        if (known != byName_.end()) {
            return *known->second;
        }
        Types::UUID identifier;
        if (written_ == WrittenIdentifiers::replaced || !parse(written, identifier)) {
            identifier = make();
        }
        return add(name, identifier);
    }

    /// In the order in which they came up.
    Entries::const_iterator begin() const noexcept { return entries_.begin(); }
    Entries::const_iterator end() const noexcept { return entries_.end(); }
    std::size_t size() const noexcept { return entries_.size(); }

private:
    /// With its hash: a map would work it out again for the names beside the one it looks for.
    struct Name {
        std::uint64_t hash;
        std::u16string_view text;

        friend bool operator==(const Name& a, const Name& b) noexcept {
            return a.hash == b.hash && a.text == b.text;
        }
    };
    struct HashOf {
        std::size_t operator()(const Name& name) const noexcept { return name.hash; }
    };

    /// @return false where the text is not that of an identifier, which stays as it was.
    static bool parse(const char16_t* text, Types::UUID& identifier);

    const Types::UUID& add(const Name& name, const Types::UUID& identifier);

    WrittenIdentifiers written_;
    KeyedHash hash_{KeyedHash::randomKey()};
    /// Nothing is given back before the end, and what is looked up lies close together.
    std::pmr::monotonic_buffer_resource memory_;
    Entries entries_;
    std::pmr::unordered_map<Name, const Types::UUID*, HashOf> byName_{&memory_};
};

} // namespace Corvid::XMLBuilder
