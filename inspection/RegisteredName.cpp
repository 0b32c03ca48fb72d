#include "inspection/RegisteredName.h"

#include "host/dictionary/RegisterNames.h"
#include "inspection/LabelText.h"

#include <algorithm>
#include <iterator>

namespace Corvid::Inspection {

std::string registeredName(const Types::UniversalLabel& label) {
    return std::string(MetaMetadata::Registers::nameOf(label));
}

std::string registeredName(const std::string& text) {
    const auto label = parseLabel(text);
    return label ? registeredName(*label) : "";
}

std::vector<std::string> branchesOf(const Types::UniversalLabel& label) {
    std::vector<std::string> names;
    constexpr Types::u8 front[] = {0x06, 0x0E, 0x2B, 0x34, 0x04};
    if (!std::equal(std::begin(front), std::end(front), label.bytes().begin())) {
        return names;
    }
    for (const MetaMetadata::LabelBranch& branch : MetaMetadata::Registers::branches()) {
        if (branch.holds(label)) {
            names.emplace_back(branch.name());
        }
    }
    return names;
}

} // namespace Corvid::Inspection
