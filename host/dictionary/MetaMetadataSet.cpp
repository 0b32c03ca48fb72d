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
    std::vector<std::pair<LabelMatch, std::uint32_t>> byLabel; // sorted; second: place in all
};

MetaMetadataSet::MetaMetadataSet(const Names& names, const KLV::Key& key, bool concrete)
    : MetaDefinition(names), key_(key), concrete_(concrete) {}

MetaMetadataSet::~MetaMetadataSet() { const std::unique_ptr<Inherited> owned(inherited_.load()); }

void MetaMetadataSet::add(const MetaElement& element, AttributeRequiredStatus::Status status) {
    own_.push_back(Attribute(
        Templates::auto_ptr<const AbstractMetaAttribute>(new MetaAttribute(element, status))));
}

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
    std::vector<const MetaMetadataSet*> line;
    for (const MetaMetadataSet* set = this; set != nullptr; set = set->parent_) {
        line.push_back(set);
    }
    auto made = std::make_unique<Inherited>();
    auto& [all, byLabel] = *made;
    for (auto set = line.rbegin(); set != line.rend(); ++set) {
        all.insert(all.end(), (*set)->own_.begin(), (*set)->own_.end());
    }
    byLabel.reserve(all.size());
    for (const Attribute& attribute : all) {
        // A set's own list holds nothing but MetaAttributes: add() makes them.
        const auto& known = static_cast<const MetaAttribute&>(*attribute);
        byLabel.emplace_back(known.metaElement().label().withoutVersion(),
                             static_cast<std::uint32_t>(byLabel.size()));
    }
    std::sort(byLabel.begin(), byLabel.end(),
              [](const auto& a, const auto& b) { return LabelMatchLess()(a.first, b.first); });
    return made;
}

const MetaMetadataSet::Attributes& MetaMetadataSet::attributes() const { return inherited().all; }

const MetaMetadataSet::Attribute* MetaMetadataSet::find(const Types::UniversalLabel& label) const {
    const Inherited& known = inherited();
    const LabelMatch wanted = label.withoutVersion();
    const auto place = std::lower_bound(known.byLabel.begin(), known.byLabel.end(), wanted,
                                        [](const auto& entry, const LabelMatch& match) {
                                            return LabelMatchLess()(entry.first, match);
                                        });
    if (place == known.byLabel.end() || place->first != wanted) {
        return nullptr;
    }
    return &known.all[place->second];
}

} // namespace Corvid::MetaMetadata
