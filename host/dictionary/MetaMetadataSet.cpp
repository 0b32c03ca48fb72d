#include "host/dictionary/MetaMetadataSet.h"

#include "host/dictionary/LabelMatch.h"
#include "host/dictionary/MetaAttribute.h"
#include "host/dictionary/MetaElement.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace Corvid::MetaMetadata {

/// The properties with those of the ancestors, and the way to find one.
struct MetaMetadataSet::Inherited {
    Attributes all;
    std::vector<std::pair<LabelBytes, std::uint32_t>> byLabel; // sorted; second: place in all
};

MetaMetadataSet::MetaMetadataSet(const Names& names, const KLV::Key& key, bool concrete)
    : MetaDefinition(names), key_(key), concrete_(concrete) {}

MetaMetadataSet::~MetaMetadataSet() { const std::unique_ptr<Inherited> owned(inherited_.load()); }

void MetaMetadataSet::add(const MetaElement& element, AttributeRequiredStatus::Status status) {
    own_.emplace_back(&element, status);
}

void MetaMetadataSet::reserve(std::size_t properties) { own_.reserve(properties); }

const MetaMetadataSet::Inherited& MetaMetadataSet::inherited() const {
    // No std::call_once: an exception that passes it needs memory, or it ends the process.
    if (const Inherited* known = inherited_.load(std::memory_order_acquire)) {
        return *known;
    }
    auto made = makeInherited();
    Inherited* faster = nullptr; // what another thread has made meanwhile
    return inherited_.compare_exchange_strong(faster, made.get(), std::memory_order_acq_rel,
                                              std::memory_order_acquire)
               ? *made.release()
               : *faster;
}

std::unique_ptr<MetaMetadataSet::Inherited> MetaMetadataSet::makeInherited() const {
    // From the top, so that each finds its parent's; a call for each parent could go too deep.
    std::vector<const MetaMetadataSet*> unmade;
    for (const MetaMetadataSet* set = parent_; set != nullptr && set->inherited_.load() == nullptr;
         set = set->parent_) {
        unmade.push_back(set);
    }
    std::for_each(unmade.rbegin(), unmade.rend(),
                  [](const MetaMetadataSet* set) { static_cast<void>(set->inherited()); });

    auto made = parent_ == nullptr ? std::make_unique<Inherited>()
                                   : std::make_unique<Inherited>(parent_->inherited());
    auto& [all, byLabel] = *made;
    const auto before = static_cast<std::ptrdiff_t>(byLabel.size());
    for (const auto& [element, status] : own_) {
        byLabel.emplace_back(element->label().bytes(), static_cast<std::uint32_t>(all.size()));
        all.push_back(Attribute(
            Templates::auto_ptr<const AbstractMetaAttribute>(new MetaAttribute(*element, status))));
    }
    const auto less = [](const auto& a, const auto& b) {
        return LabelMatchLess()(a.first, b.first);
    };
    std::sort(byLabel.begin() + before, byLabel.end(), less);
    std::inplace_merge(byLabel.begin(), byLabel.begin() + before, byLabel.end(), less);
    return made;
}

const MetaMetadataSet::Attributes& MetaMetadataSet::attributes() const { return inherited().all; }

const MetaMetadataSet::Attribute* MetaMetadataSet::find(const Types::UniversalLabel& label) const {
    const Inherited& known = inherited();
    const LabelBytes& wanted = label.bytes();
    const LabelMatchLess less;
    const auto place = std::lower_bound(
        known.byLabel.begin(), known.byLabel.end(), wanted,
        [&less](const auto& entry, const LabelBytes& bytes) { return less(entry.first, bytes); });
    if (place == known.byLabel.end() || less(wanted, place->first)) {
        return nullptr;
    }
    return &known.all[place->second];
}

} // namespace Corvid::MetaMetadata
