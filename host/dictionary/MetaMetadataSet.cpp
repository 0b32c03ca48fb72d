#include "host/dictionary/MetaMetadataSet.h"

#include "host/dictionary/LabelMatch.h"
#include "host/dictionary/MetaAttribute.h"
#include "host/dictionary/MetaElement.h"

#include <algorithm>
#include <cstdint>
#include <mutex>
#include <utility>
#include <vector>

namespace Corvid::MetaMetadata {

/// The properties with those of the ancestors, and the way to find one.
struct MetaMetadataSet::Inherited {
    std::once_flag once;
    Attributes all;
    std::vector<std::pair<LabelMatch, std::uint32_t>> byLabel; // sorted; second: place in all
};

MetaMetadataSet::MetaMetadataSet(const Names& names, const KLV::Key& key, bool concrete)
    : MetaDefinition(names), key_(key), concrete_(concrete),
      inherited_(std::make_unique<Inherited>()) {}

MetaMetadataSet::~MetaMetadataSet() = default;

void MetaMetadataSet::add(const MetaElement& element, AttributeRequiredStatus::Status status) {
    own_.push_back(Attribute(
        Templates::auto_ptr<const AbstractMetaAttribute>(new MetaAttribute(element, status))));
}

const MetaMetadataSet::Inherited& MetaMetadataSet::inherited() const {
    Inherited& result = *inherited_;
    std::call_once(result.once, [this, &result] {
        std::vector<const MetaMetadataSet*> line;
        for (const MetaMetadataSet* set = this; set != nullptr; set = set->parent_) {
            line.push_back(set);
        }
        Attributes all;
        for (auto set = line.rbegin(); set != line.rend(); ++set) {
            all.insert(all.end(), (*set)->own_.begin(), (*set)->own_.end());
        }
        decltype(result.byLabel) byLabel;
        byLabel.reserve(all.size());
        for (const Attribute& attribute : all) {
            // A set's own list holds nothing but MetaAttributes: add() makes them.
            const auto& known = static_cast<const MetaAttribute&>(*attribute);
            byLabel.emplace_back(known.metaElement().label().withoutVersion(),
                                 static_cast<std::uint32_t>(byLabel.size()));
        }
        std::sort(byLabel.begin(), byLabel.end(),
                  [](const auto& a, const auto& b) { return LabelMatchLess()(a.first, b.first); });
        result.all = std::move(all);
        result.byLabel = std::move(byLabel);
    });
    return result;
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
