#include "editing/apply/CloseHeader.h"

#include "editing/change/FindChanges.h"
#include "host/dataio/MemorySource.h"
#include "host/mxf/rewrite/EditedHeader.h"

namespace Corvid::Editing {

namespace {

/// A copy of header metadata after an edit, as if it were in a file.
class AfterEdit {
public:
    AfterEdit(const mxf::HeaderLayout& copy, const mxf::HeaderEdit& edit)
        : bytes_(bytesOf(copy, edit)), source_(bytes_.data(), bytes_.size()), window_(source_),
          layout_(window_, partitionOf(copy)) {}

    const mxf::HeaderLayout& layout() const noexcept { return layout_; }

private:
    /// What is before the metadata: nothing reads it.
    static constexpr std::size_t packHead = KLV::Key::length + 1;

    static mxf::Bytes bytesOf(const mxf::HeaderLayout& copy, const mxf::HeaderEdit& edit) {
        mxf::EditedHeader header(copy, edit);
        std::uint64_t extra = 0;
        while (const std::uint64_t missing = header.fit(extra)) {
            extra += missing;
        }
        mxf::Bytes bytes(packHead);
        for (const mxf::Segment& segment : header.segments()) {
            bytes.resize(packHead + static_cast<std::size_t>(segment.offset - copy.begin()));
            mxf::append(bytes, segment.bytes);
        }
        bytes.resize(packHead + static_cast<std::size_t>(copy.size() + extra));
        return bytes;
    }

    mxf::Partition partitionOf(const mxf::HeaderLayout& copy) const {
        mxf::Partition partition = copy.partition();
        partition.triplet.offset = 0;
        partition.triplet.length.value = 0;
        partition.triplet.length.octets = 1;
        partition.pack.headerByteCount = bytes_.size() - packHead;
        partition.end = bytes_.size();
        return partition;
    }

    mxf::Bytes bytes_;
    DataIO::MemorySource source_;
    DataIO::ReadWindow window_;
    mxf::HeaderLayout layout_;
};

} // namespace

Changes changesTo(const mxf::HeaderLayout& of, const mxf::HeaderLayout& wanted,
                  const mxf::HeaderEdit& edit, const MetaMetadata::Dictionary& dictionary) {
    return findChanges(of, AfterEdit(wanted, edit).layout(), dictionary);
}

} // namespace Corvid::Editing
