#include "tools/corvid/RenameSets.h"

#include "host/types/UID.h"
#include "host/types/UuidMap.h"

namespace Corvid::Tool {

namespace {

using Names = Types::UuidMap<Types::UUID>;

/// Leads references to the new names.
class Renamer : public Metadata::Visitors::NonConstElementVisitor {
public:
    explicit Renamer(const Names& names) : names_(names) {}

    void visit(Metadata::ReferenceElement& element) override {
        if (element.value() != nullptr) {
            if (auto renamed = rename(*element.value())) {
                element.setUnverifiedReference(std::move(renamed));
            }
        }
    }
    void visit(Metadata::ReferenceBatchElement& element) override { renameItems(element); }
    void visit(Metadata::ReferenceArrayElement& element) override { renameItems(element); }
    void visit(Metadata::BatchElement&) override {}
    void visit(Metadata::ArrayElement&) override {}
    void visit(Metadata::SimpleElement&) override {}

private:
    using Holder = Templates::auto_ptr<Types::Reference>;

    /// Null for a reference that stays.
    Holder rename(const Types::Reference& reference) const {
        const Types::UUID* const name = names_.find(reference.uuid());
        if (name == nullptr) {
            return {};
        }
        return reference.isStrong() ? Holder(new Types::StrongReference(*name))
                                    : Holder(new Types::WeakReference(*name));
    }
    void renameItems(Metadata::ReferenceCollectionElement& element) {
        for (Types::u32 i = 0; i != element.size(); ++i) {
            if (auto renamed = rename(element.at(i))) {
                element.replace(i, std::move(renamed));
            }
        }
    }

    const Names& names_;
};

} // namespace

void renameSets(Metadata::PartitionMetadata& metadata) {
    using namespace Types::Factories::UID;
    Names names;
    for (Metadata::MetadataSet* set : metadata) {
        if (!set->hasInstanceUID()) {
            continue;
        }
        const auto [name, isNew] = names.tryEmplace(set->instanceUID());
        if (isNew) {
            name = generateUUID(uniqueVersion);
        }
        auto* const identifier = static_cast<Metadata::SimpleElement*>(
            set->find(Metadata::Structural::StructuralMetadataULs::instanceUID()));
        identifier->set(name.clone());
    }
    Renamer renamer(names);
    for (Metadata::MetadataSet* set : metadata) {
        for (const auto& entry : set->made()) {
            entry.second->accept(renamer);
        }
        for (auto element = set->invalidBegin(); element != set->invalidEnd(); ++element) {
            (*element)->accept(renamer);
        }
    }
}

} // namespace Corvid::Tool
