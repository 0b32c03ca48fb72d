#include "editing/apply/ClipEditor.h"

#include "XMLBuilder/reader/Supplement.h"
#include "editing/DocumentMetadata.h"
#include "editing/ThroughXml.h"
#include "editing/apply/CloseHeader.h"
#include "editing/apply/SameClip.h"
#include "editing/change/CodedMetadata.h"
#include "editing/change/FindChanges.h"
#include "editing/change/Guard.h"
#include "editing/change/History.h"
#include "editing/change/PlaceChanges.h"
#include "host/base/Exceptions.h"
#include "host/dataio/ReadOnceSource.h"
#include "host/dictionary/MetaElement.h"
#include "host/metadata/MetadataSet.h"
#include "host/mxf/File.h"
#include "host/mxf/rewrite/ObjectDirectory.h"
#include "host/mxf/rewrite/RewritableFile.h"

#include <algorithm>

namespace Corvid::Editing {

namespace {

/// Lends a source to a reader that owns what it reads.
class LentSource final : public DataIO::RandomAccessSource {
public:
    explicit LentSource(DataIO::RandomAccessSource& source)
        : RandomAccessSource(source.name()), source_(source) {}

    std::size_t readAt(std::uint64_t offset, unsigned char* to, std::size_t count) override {
        return source_.readAt(offset, to, count);
    }
    std::uint64_t size() override { return source_.size(); }

private:
    DataIO::RandomAccessSource& source_;
};

/// Static local tags (SMPTE ST 377-1) of what partition packs repeat of the Preface.
constexpr Types::u16 operationalPatternTag = 0x3B09;
constexpr Types::u16 essenceContainersTag = 0x3B0A;

/// The labels of a value: one, or a collection of them.
Templates::vector<Types::UniversalLabel> labelsIn(const mxf::Bytes& value, std::size_t head) {
    Templates::vector<Types::UniversalLabel> labels;
    for (std::size_t at = head; at + Types::UniversalLabel::fixedSize <= value.size();
         at += Types::UniversalLabel::fixedSize) {
        labels.push_back(Types::UniversalLabel(
            Types::ByteView{value.data() + at, Types::UniversalLabel::fixedSize}));
    }
    return labels;
}

} // namespace

/// What reads the clip, and what plans its rewriting.
struct ClipEditor::Content {
    Content(DataIO::RandomAccessSource& clip,
            const Templates::SharedPtr<MetaMetadata::Dictionary>& definitions,
            mxf::WarningSink& warnings)
        : dictionary(definitions), source(clip),
          reader(Templates::auto_ptr<DataIO::RandomAccessSource>(new LentSource(source)),
                 definitions, warnings),
          file(source) {
        mxf::HeaderMetadata read = reader.readMetadata();
        chosen = read.partition;
        first = std::move(read.metadata);
    }

    Templates::auto_ptr<Metadata::PartitionMetadata> readMetadata();
    EditPlan plan(Metadata::PartitionMetadata& before, Metadata::PartitionMetadata& wanted,
                  const EditOptions& options, bool isDocument);
    bool mustCloseHeader();
    bool hasObjectDirectory();
    void choosePartitions(EditPlan& plan, const CopyChoice& choice);
    mxf::FileEdit place(EditPlan& plan);
    mxf::HeaderEdit placeIn(std::size_t partition, const Changes& changes);
    mxf::HeaderEdit closeHeader(EditPlan& plan);
    void placeInPacks(const EditPlan& plan, mxf::FileEdit& edit) const;
    std::string nameOf(std::size_t partition) const;

    Templates::SharedPtr<MetaMetadata::Dictionary> dictionary;
    /// Both read partition packs and the metadata of the chosen copy.
    DataIO::ReadOnceSource source;
    mxf::File reader;
    mxf::RewritableFile file;
    std::size_t chosen = 0;
    Templates::auto_ptr<Metadata::PartitionMetadata> first; ///< what the first reading gave
};

ClipEditor::ClipEditor(DataIO::RandomAccessSource& source,
                       const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary,
                       mxf::WarningSink& warnings)
    : content_(std::make_unique<Content>(source, dictionary, warnings)) {}

ClipEditor::~ClipEditor() = default;

mxf::RewritableFile& ClipEditor::file() noexcept { return content_->file; }

const mxf::Partitions& ClipEditor::partitions() const noexcept {
    return content_->file.partitions();
}

std::size_t ClipEditor::chosen() const noexcept { return content_->chosen; }

Templates::auto_ptr<Metadata::PartitionMetadata> ClipEditor::readMetadata() {
    return content_->readMetadata();
}

EditPlan ClipEditor::plan(DocumentMetadata& document, const EditOptions& options) {
    const auto metadata = readMetadata();
    const auto before = throughXml(*metadata, document.content);
    return content_->plan(*before, *document.metadata, options, true);
}

EditPlan ClipEditor::plan(Metadata::PartitionMetadata& wanted, const EditOptions& options) {
    return content_->plan(*readMetadata(), wanted, options, false);
}

Templates::auto_ptr<Metadata::PartitionMetadata> ClipEditor::Content::readMetadata() {
    if (first) {
        return std::move(first);
    }
    return reader.readMetadata(mxf::PartitionChoice::numbered(chosen)).metadata;
}

EditPlan ClipEditor::Content::plan(Metadata::PartitionMetadata& before,
                                   Metadata::PartitionMetadata& wanted, const EditOptions& options,
                                   bool isDocument) {
    const CodedMetadata old(before);
    const CodedMetadata after(wanted);
    if (isDocument) {
        requireSameClip(old.layout(), after.layout(), *dictionary);
    }
    EditPlan plan;
    plan.changes = findChanges(old.layout(), after.layout(), *dictionary);
    plan.rewrite.oldSize = source.size();
    plan.closesHeader = options.closesHeader && mustCloseHeader();
    if (plan.isEmpty()) {
        return plan;
    }
    if (!options.allowsTechnical) {
        refuseTechnical(plan.changes);
    }
    if (options.modification) {
        addHistory(plan.changes, old.layout(), after.layout(), *options.modification, *dictionary);
    }
    choosePartitions(plan, options.copies);
    plan.rewrite = file.plan(place(plan), {options.reserve, options.blockSize});
    plan.movesFixedEssence = !plan.rewrite.insertions.empty() && hasObjectDirectory();
    return plan;
}

void ClipEditor::Content::choosePartitions(EditPlan& plan, const CopyChoice& choice) {
    using Kind = CopyChoice::Kind;
    const mxf::Partitions& all = file.partitions();
    for (std::size_t i = 0; i != all.size(); ++i) {
        const auto kind = all[i].pack.kind;
        const bool isWanted = choice.kind == Kind::all ||
                              (choice.kind == Kind::header && kind == mxf::PartitionKind::header) ||
                              (choice.kind == Kind::footer && kind == mxf::PartitionKind::footer) ||
                              (choice.kind == Kind::number && i == choice.number);
        const bool isClosing = plan.closesHeader && i == 0;
        if (file.hasMetadata(i)) {
            if (isClosing || (isWanted && !plan.changes.empty())) {
                plan.copies.push_back(i);
            } else if (!plan.changes.empty() && all[i].pack.isClosed()) {
                plan.left.push_back(i);
            }
        } else if (isWanted && all[i].pack.headerByteCount != 0) {
            throw Exceptions::InvalidFormat(
                nameOf(i) + ": HeaderByteCount is " + std::to_string(all[i].pack.headerByteCount) +
                    ", but no header metadata is found there, so this copy can't be changed",
                CORVID_HERE);
        }
    }
    if (plan.copies.empty()) {
        throw Exceptions::InvalidFormat(
            choice.kind == Kind::number
                ? "partition " + std::to_string(choice.number) + " has no header metadata"
            : choice.kind == Kind::header ? "the header partition has no header metadata"
                                          : "no footer partition has header metadata",
            CORVID_HERE);
    }
}

std::string ClipEditor::Content::nameOf(std::size_t partition) const {
    return "partition " + std::to_string(partition) + " (" +
           file.partitions()[partition].pack.kindName() + ")";
}

mxf::FileEdit ClipEditor::Content::place(EditPlan& plan) {
    mxf::FileEdit edit;
    for (const std::size_t partition : plan.copies) {
        edit.copies.push_back({partition, plan.closesHeader && partition == 0
                                              ? closeHeader(plan)
                                              : placeIn(partition, plan.changes)});
    }
    placeInPacks(plan, edit);
    return edit;
}

mxf::HeaderEdit ClipEditor::Content::placeIn(std::size_t partition, const Changes& changes) {
    return placeChanges(changes, file.layout(partition), file.layout(chosen), nameOf(partition),
                        *dictionary);
}

/// @throws InvalidFormat  there is no metadata with which the header can be closed.
bool ClipEditor::Content::mustCloseHeader() {
    constexpr auto closed = mxf::PartitionStatus::closedComplete;
    const mxf::PartitionPack& header = file.partitions().front().pack;
    const mxf::PartitionPack& footer = file.partitions()[chosen].pack;
    if (header.status == closed) {
        return false;
    }
    if (header.kind != mxf::PartitionKind::header || !file.hasMetadata(0)) {
        throw Exceptions::InvalidFormat(
            "the header partition can't be closed: it has no header metadata", CORVID_HERE);
    }
    if (footer.kind != mxf::PartitionKind::footer || footer.status != closed) {
        throw Exceptions::InvalidFormat("the header partition can't be closed: no footer partition "
                                        "has closed and complete header metadata",
                                        CORVID_HERE);
    }
    return true;
}

bool ClipEditor::Content::hasObjectDirectory() {
    for (std::size_t i = 0; i != file.partitions().size(); ++i) {
        if (file.hasMetadata(i) && mxf::ObjectDirectory::find(file.layout(i))) {
            return true;
        }
    }
    return false;
}

mxf::HeaderEdit ClipEditor::Content::closeHeader(EditPlan& plan) {
    plan.closing =
        changesTo(file.layout(0), file.layout(chosen), placeIn(chosen, plan.changes), *dictionary);
    return placeChanges(plan.closing, file.layout(0), file.layout(0), nameOf(0), *dictionary);
}

/// What the packs say of operational pattern and essence containers follows the Preface.
void ClipEditor::Content::placeInPacks(const EditPlan& plan, mxf::FileEdit& edit) const {
    const auto identityOf = [this](Types::u16 tag) {
        return XMLBuilder::identityOf(dictionary->findElementByStaticTag(tag)->label());
    };
    mxf::PackEdit pack;
    for (const ChangedSet& set : plan.changes.sets) {
        if (!KLV::matches(set.place.key, Metadata::Structural::StructuralMetadataKeys::preface())) {
            continue;
        }
        for (const ChangedProperty& property : set.properties) {
            if (!property.after) {
                continue;
            }
            if (property.place.identity == identityOf(operationalPatternTag)) {
                const auto labels = labelsIn(*property.after, 0);
                pack.operationalPattern = labels.empty() ? Types::UniversalLabel() : labels.front();
            } else if (property.place.identity == identityOf(essenceContainersTag)) {
                constexpr std::size_t collectionHead = 8;
                pack.essenceContainers = labelsIn(*property.after, collectionHead);
            }
        }
    }
    if (pack.operationalPattern || pack.essenceContainers) {
        for (std::size_t i = 0; i != file.partitions().size(); ++i) {
            const bool isEdited = std::binary_search(plan.copies.begin(), plan.copies.end(), i);
            if (isEdited || plan.left.empty()) {
                pack.partition = i;
                edit.packs.push_back(pack);
            }
        }
    }
    if (plan.closesHeader) {
        const mxf::PartitionPack& footer = file.partitions()[chosen].pack;
        mxf::PackEdit header;
        header.status = footer.status;
        header.namesFooter = true;
        if (!pack.operationalPattern) {
            header.operationalPattern = footer.operationalPattern;
        }
        if (!pack.essenceContainers) {
            header.essenceContainers = footer.essenceContainers;
        }
        edit.packs.push_back(std::move(header));
    }
}

} // namespace Corvid::Editing
