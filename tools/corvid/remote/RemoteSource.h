#pragma once

#include "host/dataio/RandomAccessSource.h"
#include "tools/corvid/remote/BlockCache.h"
#include "tools/corvid/remote/HttpFile.h"

#include <memory>
#include <optional>

namespace Corvid::Tool {

/// A remote file that is read in parts, in blocks of which the last used ones are kept.
class RemoteSource final : public DataIO::RandomAccessSource {
public:
    explicit RemoteSource(std::unique_ptr<HttpFile> file);

    std::size_t readAt(std::uint64_t offset, unsigned char* to, std::size_t count) override;
    std::uint64_t size() override { return file_->size(); }

private:
    /// The bytes of a block. It is read with the following ones up to a last one, and mostly more.
    const BlockCache::Bytes& block(std::uint64_t number, std::uint64_t last);

    std::unique_ptr<HttpFile> file_;
    BlockCache cache_;
    std::uint64_t next_ = 0; ///< the block after those that were read last
    unsigned places_ = 0;    ///< that were read with their neighbours
};

/// @param address  as isAddress() takes it.
/// @param stamp    is given that of the file. Borrowed.
/// @throws IOError  as HttpFile.
Templates::auto_ptr<DataIO::RandomAccessSource> openRemote(const std::string& address,
                                                           const RemoteLimits& limits,
                                                           std::optional<RemoteStamp>& stamp);

/// Asks a server for one byte of a file. Nothing where the server gives no stamp, sends no parts or
/// does not answer as it should: the reader of the file then says why.
std::optional<RemoteStamp> askForStamp(const std::string& address);

} // namespace Corvid::Tool
