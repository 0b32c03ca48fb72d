#include "editing/change/Guard.h"

#include "host/base/Exceptions.h"
#include "host/types/FixedBytes.h"

#include <algorithm>
#include <map>

namespace Corvid::Editing {

namespace {

bool isTechnical(const Types::UniversalLabel& label) {
    constexpr std::array<Types::u8, 7> registered{0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01};
    const auto& bytes = label.bytes();
    const auto item = Types::readBigEndian<Types::u64>(bytes.data() + 8);
    return std::equal(registered.begin(), registered.end(), bytes.begin()) &&
           std::any_of(technicalProperties.begin(), technicalProperties.end(),
                       [item](const TechnicalProperty& each) { return each.label == item; });
}

} // namespace

std::vector<TechnicalChange> technicalChanges(const Changes& changes) {
    std::vector<TechnicalChange> found;
    for (const ChangedSet& set : changes.sets) {
        for (const ChangedProperty& property : set.properties) {
            if (property.label && isTechnical(*property.label)) {
                found.push_back({&set, &property});
            }
        }
    }
    return found;
}

void refuseTechnical(const Changes& changes) {
    const auto found = technicalChanges(changes);
    if (found.empty()) {
        return;
    }
    std::map<std::string, std::size_t> counts; // by what is changed
    for (const TechnicalChange& change : found) {
        ++counts[change.set->name + "/" + change.property->name];
    }
    std::string names;
    for (const auto& [name, count] : counts) {
        names += (names.empty() ? "" : ", ") + name +
                 (count == 1 ? "" : " (" + std::to_string(count) + " times)");
    }
    throw Exceptions::InvalidFormat("the edit changes what the file is made of: " + names +
                                        "; --allow-technical does it all the same",
                                    CORVID_HERE);
}

} // namespace Corvid::Editing
