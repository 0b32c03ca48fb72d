#include "tools/corvid/page/PageComparison.h"

#include "host/base/Text.h"
#include "host/metadata/PartitionMetadata.h"

#include <nlohmann/json.hpp>
#include <unordered_map>

namespace Corvid::Tool {

namespace {

using Json = nlohmann::ordered_json;
using Metadata::PartitionMetadata;

/// Sets and dark sets of a partition, in one order for all that were read from one file.
std::vector<const void*> objectsOf(const PartitionMetadata& metadata) {
    std::vector<const void*> objects(metadata.begin(), metadata.end());
    objects.insert(objects.end(), metadata.darkBegin(), metadata.darkEnd());
    return objects;
}

/// Where the KLVs that were compared are in the JSON of a page. Numbers are those of a layout, whose
/// first KLV is the primer pack.
class JsonPlaces {
public:
    /// @param compared  the metadata that was compared: that of the page, or of another reading.
    JsonPlaces(const PartitionMetadata& compared, const XMLBuilder::DocumentPlan& page) {
        std::unordered_map<const void*, std::size_t> places;
        for (const auto* const set : page.sets()) {
            places.emplace(set, places.size());
        }
        for (const auto& each : page.floating()) {
            const void* const object = each.set != nullptr ? static_cast<const void*>(each.set)
                                       : each.group != nullptr
                                           ? static_cast<const void*>(each.group)
                                           : static_cast<const void*>(each.dark);
            places.emplace(object, places.size());
        }
        count_ = places.size();
        const auto ofPage = objectsOf(page.partition());
        const auto ofCompared = objectsOf(compared);
        std::unordered_map<const void*, std::size_t> comparedPlaces;
        for (std::size_t i = 0; i != ofPage.size(); ++i) {
            if (const auto found = places.find(ofPage[i]); found != places.end()) {
                comparedPlaces.emplace(ofCompared[i], found->second);
            }
        }
        Templates::vector<const Metadata::MetadataSet*> sets;
        compared.calculateSerializationOrder(sets, true, false);
        std::vector<const void*> order(sets.begin(), sets.end());
        order.insert(order.end(), compared.darkBegin(), compared.darkEnd());
        for (const void* const object : order) {
            const auto found = comparedPlaces.find(object);
            byNumber_.push_back(found == comparedPlaces.end() ? std::nullopt
                                                              : std::make_optional(found->second));
        }
    }

    std::size_t count() const noexcept { return count_; }
    std::optional<std::size_t> at(std::size_t number) const {
        return number == 0 || number > byNumber_.size() ? std::nullopt : byNumber_[number - 1];
    }

private:
    std::vector<std::optional<std::size_t>> byNumber_;
    std::size_t count_ = 0;
};

std::string nameOf(const Editing::ChangedProperty& property) {
    return property.label ? Platform::toUtf8(property.label->toString()) : property.name;
}

} // namespace

Json pairsOf(const PageComparison& comparison, const PageContent& after) {
    const JsonPlaces before(comparison.before.plan.partition(), comparison.before.plan);
    const JsonPlaces places(comparison.compared, after.plan);
    std::vector<Json> pairs(places.count());
    for (const auto& [old, number] : comparison.changes.pairs) {
        if (const auto place = places.at(number)) {
            const auto other = before.at(old);
            pairs[*place] = other ? Json(*other) : Json(nullptr);
        }
    }
    return pairs;
}

Json changedOf(const PageComparison& comparison, const PageContent& after) {
    const JsonPlaces places(comparison.compared, after.plan);
    Json list = Json::array();
    for (const Editing::ChangedSet& set : comparison.changes.sets) {
        const auto place = places.at(set.number);
        if (set.kind != Editing::ChangedSet::Kind::changed || !place) {
            continue;
        }
        Json properties = Json::array();
        for (const Editing::ChangedProperty& property : set.properties) {
            properties.push_back(nameOf(property));
        }
        list.push_back({*place, std::move(properties)});
    }
    for (const Editing::ChangedDark& dark : comparison.changes.dark) {
        const auto place = places.at(dark.number);
        if (dark.before && dark.after && place) {
            list.push_back({*place, Json::array()});
        }
    }
    return list;
}

} // namespace Corvid::Tool
