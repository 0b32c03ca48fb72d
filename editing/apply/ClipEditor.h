#pragma once

#include "editing/change/Changes.h"
#include "editing/change/History.h"
#include "host/metadata/PartitionMetadata.h"
#include "host/mxf/File.h"
#include "host/mxf/rewrite/RewritableFile.h"

namespace Corvid::Editing {

struct DocumentMetadata;

/// Which copies of header metadata an edit changes.
struct CopyChoice {
    enum class Kind : unsigned char { all, header, footer, number };

    Kind kind = Kind::all;
    std::size_t number = 0; ///< of a partition, in the order of the file
};

/// How an edit is made.
struct EditOptions {
    CopyChoice copies;
    bool allowsTechnical = false; ///< see Guard.h
    /// What is recorded in the file; nothing leaves its history alone.
    std::optional<Modification> modification;
    mxf::Growth growth;
};

/// What an edit does to a clip.
struct EditPlan {
    Changes changes;                 ///< of the metadata; empty where nothing changes
    mxf::Rewrite rewrite;            ///< of the file
    std::vector<std::size_t> copies; ///< the partitions whose header metadata changes
    /// Closed partitions whose header metadata stays as it is, unlike that of the others.
    std::vector<std::size_t> left;

    bool isEmpty() const noexcept { return changes.empty(); }
};

/// Changes of the header metadata of one MXF file. It reads and plans; nothing is written.
///
/// The edit is made for the copy that is read by default, the last complete one, and applied to all
/// others by sets and properties. What does not change keeps its bytes and its place.
class ClipEditor {
public:
    /// @param source    borrowed; must outlive the object, and must not change meanwhile.
    /// @param warnings  as for mxf::File.
    /// @throws BaseException  as mxf::File and mxf::RewritableFile.
    ClipEditor(DataIO::RandomAccessSource& source,
               const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary,
               mxf::WarningSink& warnings);
    ~ClipEditor();

    /// The partitions of the file, in its order.
    const mxf::Partitions& partitions() const noexcept { return file_.partitions(); }
    /// The partition whose copy edits are made for.
    std::size_t chosen() const noexcept { return chosen_; }

    /// Reads the metadata of that copy, anew with each call: to be changed and given to plan().
    Templates::auto_ptr<Metadata::PartitionMetadata> readMetadata();

    /// Plans what makes the file say what a document says.
    /// @param document  read strictly, with the identifiers that are written in it. Borrowed.
    /// @throws InvalidFormat  the document is of another clip or of an older state of this one; it
    ///                        changes what is technical; a copy differs where it is to change; or
    ///                        as mxf::RewritableFile::plan(), which also throws LimitExceeded.
    EditPlan plan(DocumentMetadata& document, const EditOptions& options);

    /// Plans what makes the file say what metadata says that readMetadata() gave.
    /// @param wanted  borrowed.
    /// @throws InvalidFormat, LimitExceeded  likewise.
    EditPlan plan(Metadata::PartitionMetadata& wanted, const EditOptions& options);

private:
    EditPlan plan(Metadata::PartitionMetadata& before, Metadata::PartitionMetadata& wanted,
                  const EditOptions& options, bool isDocument);
    void choosePartitions(EditPlan& plan, const CopyChoice& choice);
    mxf::FileEdit place(const EditPlan& plan);
    void placeInPacks(const EditPlan& plan, mxf::FileEdit& edit) const;
    std::string nameOf(std::size_t partition) const;

    Templates::SharedPtr<MetaMetadata::Dictionary> dictionary_;
    mxf::File reader_;
    DataIO::RandomAccessSource& source_;
    mxf::RewritableFile file_;
    std::size_t chosen_ = 0;
    Templates::auto_ptr<Metadata::PartitionMetadata> first_; ///< what the first reading gave
};

} // namespace Corvid::Editing
