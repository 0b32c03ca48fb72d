#pragma once

#include "XMLBuilder/format/HexBytes.h"
#include "host/base/KeyedHash.h"
#include "host/types/IdentifierTypes.h"

#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <string_view>
#include <unordered_map>

namespace Corvid::XMLBuilder {

/// What the InstanceUIDs of a partition have to do with the identifiers of the document.
enum class WrittenIdentifiers : unsigned char {
    replaced, ///< every set gets an InstanceUID that nobody else has
    kept,     ///< a written identifier is the InstanceUID, wherever it is the text of one
};

/// The identifiers of a document that is read leniently, as they are written there, and the
/// InstanceUIDs that they have in the partition. A reference and its target meet here,
/// whichever is read first.
class InstanceNameTable {
public:
    /// @throws IOError  the system's random source gives nothing.
    explicit InstanceNameTable(WrittenIdentifiers written = WrittenIdentifiers::replaced)
        : written_(written) {}
    InstanceNameTable(const InstanceNameTable&) = delete;
    InstanceNameTable& operator=(const InstanceNameTable&) = delete;

    /// The InstanceUID of a written identifier: itself where those that are written are kept, or
    /// else the one that make() returned when it came up.
    template <class Make> Types::UUID findOrAdd(std::u16string_view written, Make make) {
        if (written_ == WrittenIdentifiers::kept) {
            if (const auto identifier = parseUuid(written)) {
                return *identifier;
            }
        }
        const Name name{hash_(written), written};
        const auto known = byName_.find(name);
        return known == byName_.end() ? add(name, make()) : known->second;
    }

    /// How many have an InstanceUID that they are not themselves.
    std::size_t size() const noexcept { return byName_.size(); }

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

    const Types::UUID& add(const Name& name, const Types::UUID& identifier);

    WrittenIdentifiers written_;
    KeyedHash hash_{KeyedHash::randomKey()};
    /// Nothing is given back before the end, and what is looked up lies close together.
    std::pmr::monotonic_buffer_resource memory_;
    std::pmr::unordered_map<Name, Types::UUID, HashOf> byName_{&memory_};
};

} // namespace Corvid::XMLBuilder
