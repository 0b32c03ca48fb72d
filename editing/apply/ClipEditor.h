#pragma once

#include "editing/change/Changes.h"
#include "editing/change/Modification.h"
#include "host/metadata/PartitionMetadata.h"
#include "host/mxf/Partitions.h"
#include "host/mxf/rewrite/Rewrite.h"

#include <memory>

namespace Corvid::mxf {
class RewritableFile;
}

namespace Corvid::Editing {

struct DocumentMetadata;

/// Which copies of header metadata an edit changes.
struct CopyChoice {
    /// Of which partitions.
    enum class Kind : unsigned char { all, header, footer, number };

    Kind kind = Kind::all;
    std::size_t number = 0; ///< of a partition, in the order of the file
};

/// The most bytes that an edit reserves.
constexpr std::uint64_t greatestReserve = 64 * 1024 * 1024;

/// How an edit is made.
struct EditOptions {
    CopyChoice copies;
    /// Changes also what wires the file together or describes its essence: see
    /// editing/change/TechnicalProperties.def.
    bool allowsTechnical = false;
    /// Makes the header partition closed and complete, with the header metadata of the footer.
    bool closesHeader = false;
    /// What is recorded in the file; nothing leaves its history alone.
    std::optional<Modification> modification;
    std::uint64_t reserve = 8192; ///< bytes of fill for later edits, where metadata must grow
    /// Bytes of which growth is a multiple: what the file system can insert, see blockSizeOf().
    std::uint64_t blockSize = 1;
};

/// What an edit does to a clip.
struct EditPlan {
    Changes changes;           ///< of the metadata; empty where nothing changes
    bool closesHeader = false; ///< the header partition becomes closed and complete
    /// What makes the metadata of the header partition that of the footer, where it is closed.
    Changes closing;
    mxf::Rewrite rewrite;            ///< of the file
    std::vector<std::size_t> copies; ///< the partitions whose header metadata changes
    /// Closed partitions whose header metadata stays as it is, unlike that of the others.
    std::vector<std::size_t> left;
    /// Essence moves in a file with a directory of objects: the systems that make such files may
    /// expect it where it was.
    bool movesFixedEssence = false;

    bool isEmpty() const noexcept { return changes.empty() && !closesHeader; }
};

/// Changes of the header metadata of one MXF file. It reads and plans; nothing is written.
///
/// The edit is made for the copy that is read by default, the last complete one, and applied to all
/// others by sets and properties. What does not change keeps its bytes and its place.
class CORVID_EDITING_EXPORT ClipEditor {
public:
    /// @param source    borrowed; must outlive the object, and must not change meanwhile.
    /// @param warnings  gets what is wrong with the file. Borrowed; must outlive the object.
    /// @throws InvalidFormat  it is no MXF file, or has no header metadata; InvalidLength, IOError,
    ///                        LimitExceeded  as mxf::File.
    ClipEditor(DataIO::RandomAccessSource& source,
               const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary,
               mxf::WarningSink& warnings);
    ~ClipEditor();

    /// The clip as it is taken apart to be changed.
    mxf::RewritableFile& file() noexcept;
    /// The partitions of the file, in its order.
    const mxf::Partitions& partitions() const noexcept;
    /// The partition whose copy edits are made for.
    std::size_t chosen() const noexcept;

    /// Reads the metadata of that copy, anew with each call: to be changed and given to plan().
    Templates::auto_ptr<Metadata::PartitionMetadata> readMetadata();

    /// Plans what makes the file say what a document says.
    /// @param document  read strictly, with the identifiers that are written in it. Borrowed.
    /// @throws InvalidFormat  the document is of another clip or of an older state of this one; it
    ///                        changes what is technical; a copy differs where it is to change; the
    ///                        header is to be closed, but no footer has closed and complete
    ///                        metadata; or metadata must grow, but the offsets in the file are not
    ///                        certain.
    /// @throws LimitExceeded  a value or set is too long, or growth would be.
    EditPlan plan(DocumentMetadata& document, const EditOptions& options);

    /// Plans what makes the file say what metadata says that readMetadata() gave.
    /// @param wanted  borrowed.
    /// @throws InvalidFormat, LimitExceeded  likewise.
    EditPlan plan(Metadata::PartitionMetadata& wanted, const EditOptions& options);

private:
    struct Content;
    std::unique_ptr<Content> content_;
};

} // namespace Corvid::Editing
