#include "host/metadata/PartitionMetadata.h"

#include "host/base/Exceptions.h"
#include "host/dictionary/MetaElement.h"
#include "host/metadata/FollowedReferences.h"
#include "host/metadata/ReferenceIndex.h"
#include "host/types/UID.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>
#include <vector>

namespace Corvid::Metadata {

PartitionMetadata::PartitionMetadata(Templates::SharedPtr<MetaMetadata::Dictionary> dictionary)
    : dictionary_(std::move(dictionary)) {}

PartitionMetadata::~PartitionMetadata() {
    for (const MetadataSet* set : sets_) {
        delete set;
    }
    for (const DarkMetadataSet* set : darkSets_) {
        delete set;
    }
}

PartitionMetadata::Sets PartitionMetadata::find(const KLV::Key& key) const {
    Sets found;
    std::copy_if(sets_.begin(), sets_.end(), std::back_inserter(found),
                 [&key](const MetadataSet* set) { return KLV::matches(set->key(), key); });
    return found;
}

const ReferenceIndex& PartitionMetadata::references() const {
    if (!references_) {
        references_ = std::make_unique<ReferenceIndex>(sets_);
    }
    return *references_;
}

Targets PartitionMetadata::resolve(const Types::UUID& uuid) const {
    return references().find(uuid);
}

bool PartitionMetadata::isAmbiguous() const { return references().isAmbiguous(); }

void PartitionMetadata::forgetReferences() const noexcept { references_.reset(); }

Targets PartitionMetadata::resolve(const Types::Reference& reference) const {
    return resolve(reference.uuid());
}

std::size_t PartitionMetadata::calculateSerializationOrder(
    Templates::vector<const MetadataSet*>& order, bool withFloating, bool structuralOnly) const {
    std::vector<bool> isSeen(sets_.size());
    const auto append = [&](const MetadataSet* set) {
        if (!structuralOnly || KLV::isStructuralMetadataSet(set->key())) {
            order.push_back(set);
        }
    };

    // Depth first, whatever the depth: the references still to be followed wait in one list, those
    // of a set reversed, so that its first is the next.
    Templates::vector<const MetadataSet*> waiting;
    if (const Sets prefaces = find(Structural::StructuralMetadataKeys::preface());
        !prefaces.empty()) {
        waiting.push_back(prefaces.front());
    }
    Templates::vector<const Types::Reference*> references;
    while (!waiting.empty()) {
        const MetadataSet* set = waiting.back();
        waiting.pop_back();
        if (isSeen[set->place_]) {
            continue;
        }
        isSeen[set->place_] = true;
        append(set);
        references.clear();
        appendFollowedReferences(*set, references);
        for (auto reference = references.rbegin(); reference != references.rend(); ++reference) {
            const Targets targets = resolve(**reference);
            // A document holds a set of unknown class wherever it is first referred to.
            if (!targets.empty() &&
                ((*reference)->isStrong() || targets.front().metaMetadataSet() == nullptr)) {
                waiting.push_back(&targets.front());
            }
        }
    }

    const std::size_t inTree = order.size();
    if (withFloating) {
        for (const MetadataSet* set : sets_) {
            if (!isSeen[set->place_]) {
                append(set);
            }
        }
    }
    return order.size() - inTree;
}

template <class Set> Set& PartitionMetadata::own(Templates::auto_ptr<Set> set) {
    sets_.push_back(set.get());
    set->place_ = sets_.size() - 1;
    forgetReferences();
    return *set.release();
}

MetadataSet& PartitionMetadata::createMetadataSet(const KLV::Key& key) {
    const auto* definition = dictionary_.dictionary()->findSet(key);
    if (definition == nullptr) {
        throw Exceptions::InvalidArgument("no set class with the key " +
                                              Platform::toUtf8(key.toString()) +
                                              " in the partition's dictionary",
                                          CORVID_HERE);
    }
    MetadataSet& set = createEmptyMetadataSet(key, *definition);
    set.holdWholeClass();
    if (auto* identifier = static_cast<SimpleElement*>(
            set.find(Structural::StructuralMetadataULs::instanceUID()))) {
        identifier->set(
            Types::Factories::UID::generateUUID(Types::Factories::UID::uniqueVersion).clone());
    }
    return set;
}

MetadataSet& PartitionMetadata::createEmptyMetadataSet(
    const KLV::Key& key, const MetaMetadata::MetaMetadataSet& definition) {
    return own(Templates::auto_ptr<MetadataSet>(new MetadataSet(*this, key, &definition)));
}

DarkParsedGroup& PartitionMetadata::createDarkParsedGroup(const KLV::Key& key) {
    return own(Templates::auto_ptr<DarkParsedGroup>(new DarkParsedGroup(*this, key)));
}

void PartitionMetadata::addDarkMetadataSet(Templates::auto_ptr<DarkMetadataSet> set) {
    if (!set) {
        throw Exceptions::InvalidArgument("no dark set to add to the partition, expected one",
                                          CORVID_HERE);
    }
    darkSets_.push_back(set.get());
    set.release();
}

PartitionMetadata::DarkSets::const_iterator PartitionMetadata::removeDark(
    DarkSets::const_iterator set) {
    delete *set;
    return darkSets_.erase(set);
}

void PartitionMetadata::remove(const Templates::vector<const MetadataSet*>& sets) {
    const std::unordered_set<const MetadataSet*> named(sets.begin(), sets.end());
    const auto isNamed = [&named](const MetadataSet* set) { return named.count(set) != 0; };
    std::vector<const MetadataSet*> doomed;
    std::copy_if(sets_.begin(), sets_.end(), std::back_inserter(doomed), isNamed);
    sets_.erase(std::remove_if(sets_.begin(), sets_.end(), isNamed), sets_.end());
    for (std::size_t place = 0; place != sets_.size(); ++place) {
        sets_[place]->place_ = place;
    }
    forgetReferences();
    for (const MetadataSet* set : doomed) {
        delete set;
    }
}

void PartitionMetadata::removeLast(const MetadataSet& set) noexcept {
    sets_.pop_back();
    forgetReferences();
    delete &set;
}

} // namespace Corvid::Metadata
