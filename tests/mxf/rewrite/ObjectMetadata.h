#pragma once

#include "tests/support/MxfBuilder.h"

namespace Corvid::Testing {

inline constexpr unsigned rootInstance = 77;

/// What of a directory of objects is not true.
struct ObjectParts {
    bool offsetInPrimer = true;
    std::uint64_t offsetsAdd = 0; ///< to the entries
    std::uint64_t rootAdds = 0;   ///< to the root's offset
    std::uint64_t count = 3;      ///< of the entries, as the directory says
    bool hasRoot = true;
};

/// Header metadata with a root of objects (77), Preface (1) and ContentStorage (2), the directory
/// of the three, and fill.
/// @param begin  where in the file it will be.
inline Bytes objectMetadata(std::uint64_t begin, const ObjectParts& parts = {}) {
    auto entries = standardLabels();
    if (parts.offsetInPrimer) {
        entries.emplace_back(3, hex("06.0e.2b.34.01.01.01.02.06.01.01.07.07.00.00.00"));
    }
    const Bytes primerPack = primer(entries);
    const std::uint64_t rootAt = begin + primerPack.size();
    const auto root = [&](std::uint64_t offset) {
        return parts.hasRoot ? klv(hex("80.53.08.00.36.21.08.04.b3.b3.98.a5.1c.90.11.d4"),
                                   join({property(instanceUIDTag, uuid(rootInstance)),
                                         property(3, join({Bytes(16), number(offset, 8)}))}),
                                   9)
                             : Bytes();
    };
    const Bytes sets = smallSets();
    const std::uint64_t prefaceAt = rootAt + root(0).size();
    const std::uint64_t directoryAt = prefaceAt + sets.size();
    const std::uint64_t storageAt = directoryAt - set(structuralKey(contentStorageSet), 2).size();
    const auto entry = [&](unsigned instance, std::uint64_t offset, unsigned flags) {
        return join({uuid(instance), number(offset + parts.offsetsAdd, 8), number(flags, 1)});
    };
    const Bytes directory = klv(hex("96.13.b3.8a.87.34.87.46.f1.02.96.f0.56.e0.4d.2a"),
                                join({number(parts.count, 8), number(25, 1), entry(2, storageAt, 9),
                                      entry(rootInstance, rootAt, 0), entry(1, prefaceAt, 5)}),
                                9);
    return join({primerPack, root(directoryAt + parts.rootAdds), sets, directory, fill(400)});
}

} // namespace Corvid::Testing
