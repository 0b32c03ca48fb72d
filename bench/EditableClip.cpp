#include "bench/EditableClip.h"

#include "bench/GeneratedMetadata.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace Corvid::Bench {

namespace {

using namespace Testing;

constexpr unsigned essenceOctets = 9; // of its BER length
constexpr std::size_t essenceHead = 16 + essenceOctets;
constexpr std::size_t packSize = 16 + 4 + 88;
constexpr std::size_t fillHead = 16 + 4;

void put(std::ofstream& file, std::uint64_t offset, const Bytes& bytes) {
    file.seekp(static_cast<std::streamoff>(offset));
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

} // namespace

EditableClip::EditableClip(const ClipShape& shape) {
    const Bytes metadata = join({generateMetadata(shape.sets).bytes, fill(shape.room - fillHead)});
    const std::uint64_t each = shape.bodies == 0 ? 0 : shape.essence / shape.bodies;
    const std::uint64_t footer =
        packSize + metadata.size() + shape.bodies * (packSize + essenceHead + each);
    add(headerPartition(metadata), 0, footer);
    for (std::size_t i = 0; i != shape.bodies; ++i) {
        PartitionSpec body = bodyPartition();
        body.bodySid = 1;
        body.behindMetadata = join({essenceKey(), ber(each, essenceOctets)});
        add(std::move(body), each, footer);
    }
    add(footerPartition(metadata), 0, footer);
    // A file of nothing else, so that the random index pack is what is after its one partition.
    const Bytes alone = MxfBuilder().add(headerPartition({})).build();
    const Bytes listed =
        MxfBuilder().add(headerPartition({})).withRandomIndexPack(offsets_).build();
    pieces_.emplace_back(
        size_, Bytes(listed.begin() + static_cast<std::ptrdiff_t>(alone.size()), listed.end()));
    packs_ += listed.size() - alone.size();
    size_ += listed.size() - alone.size();
}

void EditableClip::add(PartitionSpec partition, std::uint64_t essence, std::uint64_t footer) {
    metadata_ += partition.metadata.size();
    packs_ += packSize;
    partition.thisPartition = size_;
    partition.previousPartition = offsets_.empty() ? 0 : offsets_.back();
    partition.footerPartition = footer;
    offsets_.push_back(size_);
    pieces_.emplace_back(size_, MxfBuilder().add(std::move(partition)).build());
    size_ += pieces_.back().second.size() + essence;
}

void EditableClip::writeTo(const std::string& path, Essence essence) const {
    std::filesystem::remove(path);
    std::ofstream file(path, std::ios::binary);
    if (essence == Essence::data) {
        const Bytes piece = repeat('x', std::size_t{1} << 20);
        for (std::uint64_t at = 0; at < size_; at += piece.size()) {
            put(file, at, piece);
        }
        file.flush();
        std::filesystem::resize_file(path, size_);
    }
    for (const auto& [offset, bytes] : pieces_) {
        put(file, offset, bytes);
    }
    if (!file.flush()) {
        throw std::runtime_error("can't write " + path);
    }
}

} // namespace Corvid::Bench
