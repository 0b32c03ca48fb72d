#include "inspection/StructuralLabels.h"

#include <algorithm>

namespace Corvid::Inspection::Structural {

namespace {

struct NamedLabel {
    Types::u64 back;
    const char* name;
};

// Data definitions of SMPTE ST 400; front half 06.0e.2b.34.04.01.01, version byte apart.
constexpr NamedLabel trackKinds[] = {
    {0x0103020101000000, "Timecode"},    // SMPTE ST 12 without active user bits
    {0x0103020102000000, "Timecode"},    // SMPTE ST 12 with active user bits
    {0x0103020103000000, "Timecode"},    // SMPTE ST 309 date and time
    {0x0103020110000000, "Descriptive"}, // descriptive metadata
    {0x0103020201000000, "Picture"},     {0x0103020202000000, "Sound"},
    {0x0103020203000000, "Data"},        {0x0103020301000000, "Auxiliary data"},
    {0x0103020302000000, "Parsed text"},
};

/// The operational pattern's own bytes, or nothing for another label.
bool isOperationalPattern(const Types::UniversalLabel& label) {
    const auto bytes = label.withoutVersion();
    const auto front = sixteenBytes(0x060e2b3404010100, 0x0d01020100000000);
    return std::equal(bytes.begin(), bytes.begin() + 12, front.begin());
}

constexpr int itemByte = 12;
constexpr int packageByte = 13;
constexpr int qualifierByte = 14;
constexpr Types::u8 atom = 0x10;

bool isGeneralised(const Types::UniversalLabel& label) {
    return isOperationalPattern(label) && label[itemByte] >= 1 && label[itemByte] <= 3 &&
           label[packageByte] >= 1 && label[packageByte] <= 3;
}

} // namespace

bool isOfMetaDictionary(const KLV::Key& key) {
    const auto front = sixteenBytes(0x060e2b3402530100, 0x0d01010102000000);
    return std::equal(front.begin(), front.begin() + 13, key.forMatching().begin());
}

std::string trackKind(const Types::UniversalLabel& label) {
    const auto bytes = label.withoutVersion();
    for (const NamedLabel& kind : trackKinds) {
        if (bytes == sixteenBytes(0x060e2b3404010100, kind.back)) {
            return kind.name;
        }
    }
    return "";
}

std::string operationalPatternName(const Types::UniversalLabel& label) {
    if (isGeneralised(label)) {
        return "OP" + std::to_string(label[itemByte]) +
               static_cast<char>('a' + label[packageByte] - 1);
    }
    return isOperationalPattern(label) && label[itemByte] == atom ? "OP-Atom" : "";
}

std::string operationalPatternWords(const Types::UniversalLabel& label) {
    constexpr const char* items[] = {"single item", "playlist items", "edit items"};
    constexpr const char* counts[] = {"single package", "ganged packages", "alternate packages"};
    if (isGeneralised(label)) {
        const Types::u8 qualifiers = label[qualifierByte];
        return std::string(items[label[itemByte] - 1]) + ", " + counts[label[packageByte] - 1] +
               ((qualifiers & 2) != 0 ? ", external essence" : "") +
               ((qualifiers & 4) != 0 ? ", not for streaming" : "") +
               ((qualifiers & 8) != 0 ? ", several tracks" : ", one track");
    }
    return operationalPatternName(label).empty() ? "" : "one item of one essence track";
}

} // namespace Corvid::Inspection::Structural
