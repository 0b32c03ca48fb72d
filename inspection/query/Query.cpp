#include "inspection/query/Query.h"

#include "host/dictionary/MetaElement.h"
#include "host/metadata/ElementItems.h"

#include <algorithm>

namespace Corvid::Inspection {

namespace {

using Metadata::Element;
using Metadata::MetadataSet;
using Sets = std::vector<MetadataSet*>;

bool isOfClass(const MetadataSet& set, const Step& step) {
    for (const auto* each = set.metaMetadataSet(); each != nullptr; each = each->parent()) {
        if (std::find(step.classes.begin(), step.classes.end(), each) != step.classes.end()) {
            return true;
        }
    }
    return false;
}

/// The elements of a set that have a value and a name, in stored order.
std::vector<Element*> elementsOf(const MetadataSet& set) {
    std::vector<Element*> elements;
    for (const auto& [label, element] : set.made()) {
        if (!element->isSkipped()) {
            elements.push_back(element);
        }
    }
    std::copy_if(set.invalidBegin(), set.invalidEnd(), std::back_inserter(elements),
                 [](const Element* element) {
                     return !element->isSkipped() && element->definition() != nullptr;
                 });
    std::sort(elements.begin(), elements.end(),
              [](const Element* a, const Element* b) { return a->position() < b->position(); });
    return elements;
}

template <class Key> std::size_t mixed(std::size_t hash, const Key& key) {
    return hash * 0x100000001b3U ^ std::hash<Key>()(key);
}

} // namespace

std::vector<std::string> textsOf(const Place& place, const ValueText& text) {
    std::vector<std::string> texts;
    if (place.element == nullptr) {
        if (place.set->hasInstanceUID()) {
            texts.push_back(text(place.set->instanceUID()));
        }
        return texts;
    }
    const Metadata::ElementItems items(place.element);
    const Types::u32 begin = place.item.value_or(0);
    const Types::u32 end = place.item ? begin + 1 : items.size();
    for (Types::u32 i = begin; i != end; ++i) {
        texts.push_back(text(items.at(i)));
    }
    return texts;
}

// What is hashed is where objects are in memory, which no file chooses.
std::size_t Query::HashOf::operator()(const Place& place) const noexcept {
    const std::size_t hash = mixed(std::hash<const void*>()(place.set), place.element);
    return mixed(hash, place.item ? *place.item + std::size_t{1} : 0);
}

std::size_t Query::HashOf::operator()(const AtPlace& each) const noexcept {
    return mixed((*this)(each.place), each.what);
}

Query::Query(const Metadata::PartitionMetadata& metadata, ValueText text)
    : metadata_(metadata), text_(std::move(text)), sets_(metadata.begin(), metadata.end()) {
    Templates::vector<const MetadataSet*> order;
    metadata.calculateSerializationOrder(order, true, false);
    std::unordered_map<const MetadataSet*, std::size_t> ranks;
    for (const MetadataSet* const set : order) {
        ranks.emplace(set, ranks.size());
    }
    const auto rankOf = [&ranks](const MetadataSet* set) {
        const auto found = ranks.find(set);
        return found == ranks.end() ? ranks.size() : found->second;
    };
    std::stable_sort(sets_.begin(), sets_.end(), [&](const MetadataSet* a, const MetadataSet* b) {
        return rankOf(a) < rankOf(b);
    });
    for (MetadataSet* const set : sets_) {
        for (auto each = set->invalidBegin(); each != set->invalidEnd(); ++each) {
            if ((*each)->definition() != nullptr && !(*each)->isSkipped()) {
                others_[{{set, nullptr, {}}, (*each)->definition()}].push_back(*each);
            }
        }
    }
}

void Query::addProperties(const Step& step, MetadataSet& set, Places& to) const {
    for (const auto* const property : step.properties) {
        if (Element* const element = set.find(property->label());
            element != nullptr && !element->isSkipped()) {
            to.push_back({&set, element, {}});
        }
        if (const auto found = others_.find({{&set, nullptr, {}}, property});
            found != others_.end()) {
            for (Element* const element : found->second) {
                to.push_back({&set, element, {}});
            }
        }
    }
}

/// What a named step leads to from a set that it begins at.
void Query::addNamed(const Step& step, MetadataSet& set, Places& to) const {
    if (isOfClass(set, step)) {
        to.push_back({&set, nullptr, {}});
    }
    addProperties(step, set, to);
}

Places Query::find(const Path& path) {
    known_.clear();
    Places places{Place()}; // the partition as a whole: no set
    for (const Step& step : path.steps) {
        places = follow(step, places);
    }
    places.erase(std::remove(places.begin(), places.end(), Place()), places.end());
    return places;
}

Places Query::follow(const Step& step, const Places& places) {
    if (step.kind == Step::Kind::anyDepth) {
        return keep(step.conditions, reach(places));
    }
    Places found;
    std::unordered_set<Place, HashOf> seen;
    for (const Place& place : places) {
        for (const Place& each : keep(step.conditions, next(step, place))) {
            if (seen.insert(each).second) {
                found.push_back(each);
            }
        }
    }
    return found;
}

/// The sets that are or lead to others by strong references, those included; the partition stays.
Places Query::reach(const Places& places) const {
    Places found;
    std::unordered_set<const MetadataSet*> seen;
    const auto add = [&](MetadataSet* set) {
        const bool isNew = seen.insert(set).second;
        if (isNew) {
            found.push_back({set, nullptr, {}});
        }
        return isNew;
    };
    Sets waiting;
    for (const Place& place : places) {
        if (place == Place()) {
            found.push_back(place);
            std::for_each(sets_.begin(), sets_.end(), add);
            continue;
        }
        waiting = targetsOf(place, false);
        std::reverse(waiting.begin(), waiting.end());
        while (!waiting.empty()) {
            MetadataSet* const set = waiting.back();
            waiting.pop_back();
            if (add(set)) {
                const Sets owned = ownedBy(*set);
                waiting.insert(waiting.end(), owned.rbegin(), owned.rend());
            }
        }
    }
    return found;
}

/// Where a step leads to from a place, its conditions left out.
Places Query::next(const Step& step, const Place& place) const {
    Places found;
    const bool isAny = step.kind == Step::Kind::any;
    if (place.set != nullptr && place.element == nullptr) {
        if (isAny) {
            for (Element* const element : elementsOf(*place.set)) {
                found.push_back({place.set, element, {}});
            }
            return found;
        }
        addProperties(step, *place.set, found);
        if (!step.classes.empty()) {
            for (MetadataSet* const set : ownedBy(*place.set)) {
                if (isOfClass(*set, step)) {
                    found.push_back({set, nullptr, {}});
                }
            }
        }
        return found;
    }
    for (MetadataSet* const set : place.set == nullptr ? sets_ : targetsOf(place, false)) {
        if (isAny) {
            found.push_back({set, nullptr, {}});
        } else {
            addNamed(step, *set, found);
        }
    }
    return found;
}

Places Query::keep(const std::vector<Condition>& conditions, Places places) {
    if (conditions.empty()) {
        return places;
    }
    Places items;
    for (const Place& place : places) {
        if (place.element == nullptr) {
            items.push_back(place);
            continue;
        }
        const Types::u32 size = Metadata::ElementItems(place.element).size();
        for (Types::u32 i = 0; i != size; ++i) {
            items.push_back({place.set, place.element, i});
        }
    }
    for (const Condition& condition : conditions) {
        items = keep(condition, items);
    }
    return items;
}

/// Positions count the items of each list, and the sets.
Places Query::keep(const Condition& condition, const Places& places) {
    Places kept;
    if (condition.kind == Condition::Kind::equal || condition.kind == Condition::Kind::unequal) {
        std::copy_if(
            places.begin(), places.end(), std::back_inserter(kept), [&](const Place& place) {
                return place.set != nullptr &&
                       leadsTo(condition, 0, place) == (condition.kind == Condition::Kind::equal);
            });
        return kept;
    }
    for (auto begin = places.begin(); begin != places.end();) {
        const auto end = std::find_if(begin, places.end(), [begin](const Place& place) {
            return place.element != begin->element;
        });
        const std::size_t size = static_cast<std::size_t>(end - begin);
        const std::size_t wanted =
            condition.kind == Condition::Kind::last ? size : condition.position;
        if (wanted <= size) {
            kept.push_back(*(begin + static_cast<std::ptrdiff_t>(wanted - 1)));
        }
        begin = end;
    }
    return kept;
}

/// Whether the path of a condition leads to its value from a place at one of its steps. What is
/// found out for a place is kept: others may lead there as well.
bool Query::leadsTo(const Condition& condition, std::size_t step, const Place& place) {
    const auto& steps = condition.path.steps;
    const AtPlace goal{place, step == steps.size() ? static_cast<const void*>(&condition)
                                                   : static_cast<const void*>(&steps[step])};
    if (const auto known = known_.find(goal); known != known_.end()) {
        return known->second;
    }
    bool leads = false;
    if (step == steps.size()) {
        const auto texts = textsOf(place, text_);
        leads = std::find(texts.begin(), texts.end(), condition.value) != texts.end();
    } else {
        const Places found = keep(steps[step].conditions, next(steps[step], place));
        leads = std::any_of(found.begin(), found.end(),
                            [&](const Place& each) { return leadsTo(condition, step + 1, each); });
    }
    known_.emplace(goal, leads);
    return leads;
}

Sets Query::setsAt(const Places& places) const {
    Sets found;
    std::unordered_set<const MetadataSet*> seen;
    for (const Place& place : places) {
        for (MetadataSet* const set : targetsOf(place, false)) {
            if (seen.insert(set).second) {
                found.push_back(set);
            }
        }
    }
    return found;
}

/// The set of a place, or those that its property refers to. Of sets with one InstanceUID the first
/// is meant.
Sets Query::targetsOf(const Place& place, bool onlyStrong) const {
    if (place.element == nullptr) {
        return {place.set};
    }
    const Metadata::ElementItems items(place.element);
    Sets found;
    const Types::u32 begin = place.item.value_or(0);
    const Types::u32 end = place.item ? begin + 1 : items.size();
    for (Types::u32 i = begin; i != end; ++i) {
        const auto* const reference = items.reference(i);
        if (reference != nullptr && (!onlyStrong || reference->isStrong())) {
            if (const auto targets = metadata_.resolve(*reference); !targets.empty()) {
                found.push_back(&targets.front());
            }
        }
    }
    return found;
}

/// The sets that a set refers to strongly, in stored order.
Sets Query::ownedBy(const MetadataSet& set) const {
    Sets found;
    for (Element* const element : elementsOf(set)) {
        const Sets targets = targetsOf({nullptr, element, {}}, true);
        found.insert(found.end(), targets.begin(), targets.end());
    }
    return found;
}

} // namespace Corvid::Inspection
