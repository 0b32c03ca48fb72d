#include "host/base/KeyedHash.h"
#include "host/dictionary/BuiltInTables.h"

#include <type_traits>

namespace Corvid::MetaMetadata {

namespace {

/// Nobody chooses the rows, so the key is no secret.
std::uint64_t hashOf(const void* bytes, std::size_t size) noexcept {
    return KeyedHash(KeyedHash::Key())(static_cast<const unsigned char*>(bytes), size);
}

template <class Row> std::uint64_t hashOf(const Rows<Row>& rows) noexcept {
    static_assert(std::has_unique_object_representations_v<Row>);
    return hashOf(rows.first, rows.count * sizeof(Row));
}

} // namespace

std::uint64_t builtInFingerprint() noexcept {
    const TablesView tables = builtInTables();
    const std::uint64_t hashes[] = {hashOf(tables.texts), hashOf(tables.namespaces),
                                    hashOf(tables.sets), hashOf(tables.uses),
                                    hashOf(tables.elements)};
    return hashOf(hashes, sizeof hashes);
}

} // namespace Corvid::MetaMetadata
