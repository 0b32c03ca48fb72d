#include "host/mxf/PrimerPack.h"

#include "host/types/FixedBytes.h"

namespace Corvid::mxf {

PrimerPack parsePrimerPack(Types::ByteView value, std::uint64_t offset, WarningSink& warnings) {
    constexpr std::size_t headSize = 8;
    constexpr std::size_t entrySize = 18;

    const auto warn = [&](std::string text) {
        Warning warning;
        warning.text = "primer pack: " + std::move(text);
        warning.offset = offset;
        warnings.warn(warning);
    };
    PrimerPack entries;
    if (value.size < headSize) {
        warn("ends after " + std::to_string(value.size) + " bytes, so it has no entries");
        return entries;
    }
    const auto count = Types::readBigEndian<Types::u32>(value.data);
    const auto itemSize = Types::readBigEndian<Types::u32>(value.data + 4);
    const std::size_t there = (value.size - headSize) / entrySize;
    if (count != there || value.size != headSize + there * entrySize) {
        warn("says " + std::to_string(count) + " entries, its length has room for " +
             std::to_string(there) + ", which are read");
    }
    if (itemSize != entrySize && count != 0) {
        warn("says entries of " + std::to_string(itemSize) + " bytes, read as 18");
    }
    entries.reserve(there);
    for (std::size_t i = 0; i != there; ++i) {
        const Types::u8* const entry = value.data + headSize + i * entrySize;
        entries.emplace_back(Types::LocalTag(Types::ByteView{entry, 2}),
                             Types::UniversalLabel(Types::ByteView{entry + 2, 16}));
    }
    return entries;
}

} // namespace Corvid::mxf
