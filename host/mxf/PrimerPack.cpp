#include "host/mxf/PrimerPack.h"

#include "host/klv/BerOutput.h"
#include "host/mxf/Keys.h"
#include "host/types/FixedBytes.h"

namespace Corvid::mxf {

namespace {

/// Number and size of the entries.
constexpr std::size_t headSize = 8;

std::size_t valueSize(const PrimerPack& entries) noexcept {
    return headSize + entries.size() * primerEntrySize;
}

} // namespace

PrimerPack parsePrimerPack(Types::ByteView value, std::uint64_t offset, WarningSink& warnings) {
    const auto warn = [&](std::string text) {
        Warning warning(WarningKinds::primerPack, "the primer pack " + std::move(text));
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
    const std::size_t there = (value.size - headSize) / primerEntrySize;
    if (count != there || value.size != headSize + there * primerEntrySize) {
        warn("says " + std::to_string(count) + " entries, but has room for " +
             std::to_string(there) + ", which are read");
    }
    if (itemSize != primerEntrySize && count != 0) {
        warn("says entries of " + std::to_string(itemSize) + " bytes; they are read as " +
             std::to_string(primerEntrySize) + " bytes");
    }
    entries.reserve(there);
    for (std::size_t i = 0; i != there; ++i) {
        const Types::u8* const entry = value.data + headSize + i * primerEntrySize;
        entries.emplace_back(Types::LocalTag(Types::ByteView{entry, 2}),
                             Types::UniversalLabel(Types::ByteView{entry + 2, 16}));
    }
    return entries;
}

std::uint64_t serializedSize(const PrimerPack& entries) noexcept {
    const std::uint64_t size = valueSize(entries);
    return KLV::Key::length + KLV::berOctets(size, packBerOctets) + size;
}

void serialize(const PrimerPack& entries, DataIO::DataSink& sink) {
    primerPackKey().serialize(sink);
    KLV::writeBer(sink, valueSize(entries), packBerOctets);
    Types::u8 head[headSize];
    Types::writeBigEndian(head, static_cast<Types::u32>(entries.size()));
    Types::writeBigEndian(head + 4, static_cast<Types::u32>(primerEntrySize));
    sink.write(head, sizeof head);
    for (const auto& [tag, label] : entries) {
        tag.serialize(sink);
        label.serialize(sink);
    }
}

} // namespace Corvid::mxf
