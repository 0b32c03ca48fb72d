#include "editing/apply/ClipEditor.h"

#include "editing/DocumentMetadata.h"
#include "editing/ThroughXml.h"
#include "editing/apply/SameClip.h"
#include "editing/change/CodedMetadata.h"
#include "editing/change/FindChanges.h"
#include "editing/change/Guard.h"
#include "editing/change/PlaceChanges.h"
#include "host/base/Exceptions.h"
#include "host/dictionary/MetaElement.h"
#include "host/metadata/MetadataSet.h"

#include <algorithm>

namespace Corvid::Editing {

namespace {

/// Lets two readers have one source.
class SharedSource final : public DataIO::RandomAccessSource {
public:
    explicit SharedSource(DataIO::RandomAccessSource& source)
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

ClipEditor::ClipEditor(DataIO::RandomAccessSource& source,
                       const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary,
                       mxf::WarningSink& warnings)
    : dictionary_(dictionary),
      reader_(Templates::auto_ptr<DataIO::RandomAccessSource>(new SharedSource(source)), dictionary,
              warnings),
      source_(source), file_(source) {
    mxf::HeaderMetadata read = reader_.readMetadata();
    chosen_ = read.partition;
    first_ = std::move(read.metadata);
}

ClipEditor::~ClipEditor() = default;

Templates::auto_ptr<Metadata::PartitionMetadata> ClipEditor::readMetadata() {
    if (first_) {
        return std::move(first_);
    }
    return reader_.readMetadata(mxf::PartitionChoice::numbered(chosen_)).metadata;
}

EditPlan ClipEditor::plan(DocumentMetadata& document, const EditOptions& options) {
    const auto metadata = readMetadata();
    const auto before = throughXml(*metadata, document.content);
    return plan(*before, *document.metadata, options, true);
}

EditPlan ClipEditor::plan(Metadata::PartitionMetadata& wanted, const EditOptions& options) {
    return plan(*readMetadata(), wanted, options, false);
}

EditPlan ClipEditor::plan(Metadata::PartitionMetadata& before, Metadata::PartitionMetadata& wanted,
                          const EditOptions& options, bool isDocument) {
    const CodedMetadata old(before);
    const CodedMetadata after(wanted);
    if (isDocument) {
        requireSameClip(old.layout(), after.layout(), *dictionary_);
    }
    EditPlan plan;
    plan.changes = findChanges(old.layout(), after.layout(), *dictionary_);
    plan.rewrite.oldSize = source_.size();
    if (plan.isEmpty()) {
        return plan;
    }
    if (!options.allowsTechnical) {
        refuseTechnical(plan.changes);
    }
    if (options.modification) {
        addHistory(plan.changes, old.layout(), after.layout(), *options.modification, *dictionary_);
    }
    choosePartitions(plan, options.copies);
    plan.rewrite = file_.plan(place(plan), options.growth);
    return plan;
}

void ClipEditor::choosePartitions(EditPlan& plan, const CopyChoice& choice) {
    using Kind = CopyChoice::Kind;
    const mxf::Partitions& all = partitions();
    for (std::size_t i = 0; i != all.size(); ++i) {
        const auto kind = all[i].pack.kind;
        const bool isWanted = choice.kind == Kind::all ||
                              (choice.kind == Kind::header && kind == mxf::PartitionKind::header) ||
                              (choice.kind == Kind::footer && kind == mxf::PartitionKind::footer) ||
                              (choice.kind == Kind::number && i == choice.number);
        if (file_.hasMetadata(i)) {
            if (isWanted) {
                plan.copies.push_back(i);
            } else if (all[i].pack.isClosed()) {
                plan.left.push_back(i);
            }
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

std::string ClipEditor::nameOf(std::size_t partition) const {
    return "partition " + std::to_string(partition) + " (" +
           partitions()[partition].pack.kindName() + ")";
}

mxf::FileEdit ClipEditor::place(const EditPlan& plan) {
    const mxf::HeaderLayout& chosen = file_.layout(chosen_);
    mxf::FileEdit edit;
    for (const std::size_t partition : plan.copies) {
        edit.copies.push_back({partition, placeChanges(plan.changes, file_.layout(partition),
                                                       chosen, nameOf(partition), *dictionary_)});
    }
    placeInPacks(plan, edit);
    return edit;
}

/// What the packs say of operational pattern and essence containers follows the Preface.
void ClipEditor::placeInPacks(const EditPlan& plan, mxf::FileEdit& edit) const {
    const auto identityOf = [this](Types::u16 tag) {
        return XMLBuilder::identityOf(dictionary_->findElementByStaticTag(tag)->label());
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
        for (std::size_t i = 0; i != partitions().size(); ++i) {
            const bool isEdited =
                std::find(plan.copies.begin(), plan.copies.end(), i) != plan.copies.end();
            if (isEdited || plan.left.empty()) {
                pack.partition = i;
                edit.packs.push_back(pack);
            }
        }
    }
}

} // namespace Corvid::Editing
