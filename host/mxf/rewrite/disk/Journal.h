#pragma once

#include "host/mxf/rewrite/Rewrite.h"
#include "host/mxf/rewrite/disk/FileSystem.h"

#include <array>

namespace Corvid::mxf {

/// What brings a file back that was changed halfway, or forward.
///
/// It is on the disk beside the file from before the first byte changes until after the last one
/// is on the disk. How far a change with an insertion is, is written into room that the journal has
/// from the beginning, so that a full disk stops neither the change nor its undoing.
struct CORVID_EXPORT Journal {
    using Hash = std::array<Types::u8, 32>; ///< BLAKE2b

    FileStatus status; ///< of the file before
    std::uint64_t newSize = 0;
    Hash front{};      ///< of the bytes at the file's front that do not change
    ByteRanges before; ///< the bytes that change, as they were and where
    ByteRanges after;  ///< and as they will be

    /// How far a change with an insertion is. Each follows the one before it.
    enum class Phase : unsigned char {
        inserting, ///< nothing is written, and the blocks may be inserted in part
        writing,   ///< the blocks are inserted
        removing,  ///< the blocks are cleared, and may be taken out in part
    };
    Phase phase = Phase::inserting;
    Insertion insertion; ///< of blocks, before anything is written; its size is 0 for none
    DataRuns data;       ///< from the insertion on, in whole blocks, where nothing is inserted
    std::uint64_t mostRuns = 0; ///< for how many runs of data each phase has room

    /// What takes a file through a rewrite in place.
    /// @throws InvalidArgument  the rewrite is not of inPlaceForm(), or of a file of another size.
    /// @throws LimitExceeded    the file has more than greatestRuns runs of data.
    /// @throws IOError          the file can't be read.
    static Journal of(const OpenFile& file, const Rewrite& rewrite);

    /// The most runs of data that a file may have after an insertion.
    static constexpr std::size_t greatestRuns = 100000;

    /// Reads what coded() gave, with the last codedPhase() that is whole.
    /// @throws InvalidFormat  the bytes are not such a journal, or not all of it.
    static Journal parse(const Bytes& bytes);
    /// The bytes of it, with a hash, and room for each phase that may follow.
    Bytes coded() const;
    /// Phase and runs of data, and where they go in the bytes of the journal.
    /// @throws LimitExceeded  there are more runs of data than the journal has room for.
    ByteRange codedPhase() const;

    /// Whether a file is the one of the journal, whatever part of the changes it has.
    bool isOf(const OpenFile& file) const;

    /// Where the journal of a file is.
    static std::string pathFor(const std::string& path);

private:
    static constexpr std::size_t phaseCount = 3;

    Bytes codedBody() const;
    std::size_t phaseRoom() const noexcept;
};

} // namespace Corvid::mxf
