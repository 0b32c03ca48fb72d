#include "tools/corvid/remote/RemoteSource.h"

#include "host/dataio/FileSource.h"

#include <algorithm>

namespace Corvid::Tool {

namespace {

constexpr std::size_t blockSize = BlockCache::blockSize;

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
}

const BlockCache::Bytes& RemoteSource::block(std::uint64_t number, std::uint64_t last) {
    if (const auto* const kept = cache_.find(number)) {
        return *kept;
    }
    std::uint64_t end = number + 1;
    const std::uint64_t furthest = std::min(last, number + BlockCache::most - 1);
    while (end <= furthest && cache_.find(end) == nullptr) {
        ++end;
    }
    const std::uint64_t offset = number * blockSize;
    const std::uint64_t size = std::min(end * blockSize, file_->size()) - offset;
    addBlocks(cache_, number, file_->read(offset, static_cast<std::size_t>(size)));
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
                                                           const RemoteLimits& limits) {
    using Source = Templates::auto_ptr<DataIO::RandomAccessSource>;
    auto file = std::make_unique<HttpFile>(address, limits);
    if (file->copy().isOpen()) {
        return Source(new DataIO::FileSource(std::move(file->copy()), file->name()));
    }
    return Source(new RemoteSource(std::move(file)));
}

} // namespace Corvid::Tool
