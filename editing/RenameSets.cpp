#include "editing/RenameSets.h"

#include "host/types/UID.h"

namespace Corvid::Editing {

namespace {

/// Leads references to the new names.
class Renamer : public Metadata::Visitors::NonConstElementVisitor {
public:
    explicit Renamer(const Renaming& names) : names_(names) {}

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

    const Renaming& names_;
};

} // namespace

Renaming renameSets(Metadata::PartitionMetadata& metadata) {
    using namespace Types::Factories::UID;
    Renaming names;
    for (const Metadata::MetadataSet* const set : metadata) {
        if (set->hasInstanceUID() && names.find(set->instanceUID()) == nullptr) {
            names.add(set->instanceUID(), generateUUID(uniqueVersion));
        }
    }
    renameSets(metadata, names);
    return names;
}

void renameSets(Metadata::PartitionMetadata& metadata, const Renaming& names) {
    Renamer renamer(names);
    for (Metadata::MetadataSet* set : metadata) {
        const Types::UUID* const name =
            set->hasInstanceUID() ? names.find(set->instanceUID()) : nullptr;
        if (name != nullptr) {
            auto* const identifier = static_cast<Metadata::SimpleElement*>(
                set->find(Metadata::Structural::StructuralMetadataULs::instanceUID()));
            identifier->set(name->clone());
        }
        for (const auto& entry : set->made()) {
            entry.second->accept(renamer);
        }
        for (auto element = set->invalidBegin(); element != set->invalidEnd(); ++element) {
            (*element)->accept(renamer);
        }
    }
}

} // namespace Corvid::Editing
