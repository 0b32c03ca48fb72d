#include "tools/corvid/remote/RemoteSource.h"

#include "host/base/Exceptions.h"
#include "host/dataio/FileSource.h"

#include <algorithm>

namespace Corvid::Tool {

namespace {

constexpr std::size_t blockSize = BlockCache::blockSize;
/// What a request asks for, in blocks: 256 KiB. Mostly, the next reads are there.
constexpr std::uint64_t blocksAtOnce = 64;
/// So many places in a file are read so, then others in single blocks: a file may have hundreds of
/// partition packs.
constexpr unsigned mostPlaces = 16;
/// What is read so close after the last request, in blocks, goes on from there.
constexpr std::uint64_t nearBy = 16;

/// Cuts bytes into blocks.
void addBlocks(BlockCache& cache, std::uint64_t number, const BlockCache::Bytes& bytes) {
    for (std::size_t begin = 0; begin < bytes.size(); begin += blockSize, ++number) {
        const auto at = bytes.begin() + static_cast<std::ptrdiff_t>(begin);
        const auto size = std::min(blockSize, bytes.size() - begin);
        cache.add(number, {at, at + static_cast<std::ptrdiff_t>(size)});
    }
}

} // namespace

RemoteSource::RemoteSource(std::unique_ptr<HttpFile> file)
    : RandomAccessSource(file->name()), file_(std::move(file)) {
    BlockCache::Bytes first = file_->firstBytes();
    if (first.size() != file_->size()) {
        // A server may have sent less than it was asked for.
        first.resize(first.size() / blockSize * blockSize);
    }
    addBlocks(cache_, 0, first);
    next_ = first.size() / blockSize;
}

const BlockCache::Bytes& RemoteSource::block(std::uint64_t number, std::uint64_t last) {
    if (const auto* const kept = cache_.find(number)) {
        return *kept;
    }
    const bool goesOn = number - next_ < nearBy; // unsigned: not before it
    std::uint64_t begin = number;
    std::uint64_t wanted = last + 1;
    if (goesOn || places_ < mostPlaces) {
        places_ += goesOn ? 0 : 1;
        const std::uint64_t front = number / blocksAtOnce * blocksAtOnce;
        while (begin != front && !cache_.has(begin - 1)) {
            --begin;
        }
        wanted = std::max(wanted, front + blocksAtOnce);
    }
    wanted = std::min(wanted, begin + BlockCache::most);
    std::uint64_t end = number + 1;
    while (end < wanted && !cache_.has(end)) {
        ++end;
    }
    const std::uint64_t offset = begin * blockSize;
    const std::uint64_t size = std::min(end * blockSize, file_->size()) - offset;
    addBlocks(cache_, begin, file_->read(offset, static_cast<std::size_t>(size)));
    next_ = end;
    return *cache_.find(number);
}

std::size_t RemoteSource::readAt(std::uint64_t offset, unsigned char* to, std::size_t count) {
    const std::uint64_t all = size();
    count =
        offset >= all ? 0 : static_cast<std::size_t>(std::min<std::uint64_t>(count, all - offset));
    for (std::size_t got = 0; got != count;) {
        const std::uint64_t at = offset + got;
        const auto& bytes = block(at / blockSize, (offset + count - 1) / blockSize);
        const auto begin = static_cast<std::size_t>(at % blockSize);
        const std::size_t size = std::min(count - got, bytes.size() - begin);
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(begin), size, to + got);
        got += size;
    }
    return count;
}

Templates::auto_ptr<DataIO::RandomAccessSource> openRemote(const std::string& address,
                                                           const RemoteLimits& limits,
                                                           std::optional<RemoteStamp>& stamp) {
    using Source = Templates::auto_ptr<DataIO::RandomAccessSource>;
    auto file = std::make_unique<HttpFile>(address, limits);
    stamp = file->stamp();
    if (file->copy().isOpen()) {
        return Source(new DataIO::FileSource(std::move(file->copy()), file->name()));
    }
    return Source(new RemoteSource(std::move(file)));
}

std::optional<RemoteStamp> askForStamp(const std::string& address) {
    RemoteLimits limits;
    limits.firstRead = 1;
    limits.repeats = 0; // the reader repeats
    try {
        return HttpFile(address, limits).stamp();
    } catch (const Exceptions::IOError&) {
        return std::nullopt;
    }
}

} // namespace Corvid::Tool
