#pragma once

#include "host/mxf/rewrite/FileMap.h"
#include "host/mxf/rewrite/HeaderEdit.h"
#include "host/mxf/rewrite/HeaderLayout.h"
#include "host/mxf/rewrite/Rewrite.h"

#include <memory>

namespace Corvid::mxf {

/// An edit of one copy of header metadata.
struct CopyEdit {
    std::size_t partition = 0; ///< its number in the order of the file
    HeaderEdit edit;
};

/// Other values for fields of a partition pack that repeat what header metadata says.
struct PackEdit {
    std::size_t partition = 0; ///< its number in the order of the file
    std::optional<PartitionStatus> status;
    bool namesFooter = false; ///< FooterPartition is the last partition, also where it was 0
    std::optional<Types::UniversalLabel> operationalPattern;
    /// Another number of them than the pack has takes its room from the fill that follows the pack,
    /// or leaves it to that.
    std::optional<Templates::vector<Types::UniversalLabel>> essenceContainers;
};

/// What is to change in a file.
struct FileEdit {
    Templates::vector<CopyEdit> copies; ///< each copy once at most
    Templates::vector<PackEdit> packs;
};

/// How header metadata grows where it has not enough room.
struct Growth {
    std::uint64_t reserve = 8192; ///< bytes of fill for later edits
    /// Bytes of which the growth is a multiple, as it is of the KAG sizes of all partitions.
    std::uint64_t blockSize = 1;
};

/// Bytes of a file, from one offset to another.
struct FileRange {
    std::uint64_t begin = 0; ///< in bytes from the front of the file
    std::uint64_t end = 0;   ///< after the last one
};

/// The most bytes of which a growth is a multiple.
constexpr std::uint64_t greatestGrowthStep = 64 * 1024 * 1024;

/// An MXF file whose header metadata can be changed: what is there, and which bytes change.
///
/// Essence and index tables are never read.
class CORVID_EXPORT RewritableFile {
public:
    /// @param source  borrowed; must outlive the object, and must not change meanwhile.
    /// @throws InvalidFormat  it is no MXF file.
    /// @throws InvalidLength  it ends inside its first partition pack.
    /// @throws IOError        the bytes can't be read.
    explicit RewritableFile(DataIO::RandomAccessSource& source);
    ~RewritableFile();

    const Partitions& partitions() const noexcept { return map_.partitions; }

    /// The copy of header metadata in a partition, read on first use.
    /// @throws InvalidFormat  there is none, or it is not whole.
    const HeaderLayout& layout(std::size_t partition);
    /// Whether a partition seems to have a copy.
    bool hasMetadata(std::size_t partition);
    /// From the end of the header metadata of a partition, or of its pack and the fill that follows
    /// it, to the next pack or the random index pack.
    /// @throws InvalidFormat  its header metadata is not whole.
    FileRange afterMetadata(std::size_t partition);

    /// Which bytes change. Where one copy has not enough room, there are insertions, and everything
    /// that counts bytes follows: the offsets in all partition packs, HeaderByteCount, the random
    /// index pack, directories of objects.
    /// @throws InvalidArgument  the edit does not fit the file.
    /// @throws InvalidFormat    metadata must grow, but the offsets in the file or HeaderByteCount
    ///                          can't be trusted.
    /// @throws LimitExceeded    a value or set is too long, or the KAG sizes ask for growth in
    ///                          steps of more than greatestGrowthStep.
    Rewrite plan(const FileEdit& edit, const Growth& growth = Growth());

private:
    class Planner;

    DataIO::ReadWindow window_;
    FileMap map_;
    Templates::map<std::size_t, std::unique_ptr<HeaderLayout>> layouts_;
};

} // namespace Corvid::mxf
