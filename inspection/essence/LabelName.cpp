#include "inspection/essence/LabelName.h"

#include "inspection/RegisteredName.h"
#include "inspection/StructuralLabels.h"

#include <algorithm>

namespace Corvid::Inspection {

namespace {

struct ShortName {
    Types::u64 item;
    unsigned length;
    const char* name;
};

constexpr ShortName shortNames[] = {
#define CORVID_SHORT_NAME(item, length, name) {item, length, name},
#include "inspection/essence/ShortNames.def"
};

} // namespace

std::string shortName(const Types::UniversalLabel& label) {
    constexpr Types::u8 registry[] = {0x06, 0x0E, 0x2B, 0x34, 0x04, 0x01, 0x01};
    if (!std::equal(std::begin(registry), std::end(registry), label.bytes().begin())) {
        return "";
    }
    const Types::u64 item = Structural::itemOf(label.bytes());
    const ShortName* best = nullptr;
    for (const ShortName& each : shortNames) {
        if (Structural::beginAlike(item, each.item, each.length) &&
            (best == nullptr || each.length > best->length)) {
            best = &each;
        }
    }
    return best == nullptr ? "" : best->name;
}

std::string labelName(const Types::UniversalLabel& label) {
    if (std::string name = shortName(label); !name.empty()) {
        return name;
    }
    if (std::string name = registeredName(label); !name.empty()) {
        return name;
    }
    const auto branches = branchesOf(label);
    return branches.empty() ? Platform::toUtf8(label.toString()) : branches.back();
}

} // namespace Corvid::Inspection
