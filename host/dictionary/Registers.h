#pragma once

#include "host/dictionary/RegisterEntries.h"
#include "host/klv/Key.h"

namespace Corvid::MetaMetadata {

/// The SMPTE metadata registers as the library knows them, and what is in use beside them.
namespace Registers {

/// The register of labels.
inline Register<RegisteredLabel> labels() noexcept {
    return Register<RegisteredLabel>(registerTables().labels);
}
/// The register of types.
inline Register<RegisteredType> types() noexcept {
    return Register<RegisteredType>(registerTables().types);
}
/// The register of elements: properties.
inline Register<RegisteredProperty> properties() noexcept {
    return Register<RegisteredProperty>(registerTables().properties);
}
/// The register of groups: classes of sets and packs.
inline Register<RegisteredGroup> groups() noexcept {
    return Register<RegisteredGroup>(registerTables().groups);
}

/// The group that a key names; an SMPTE key of any coding (sixth byte), a private one as it is.
inline std::optional<RegisteredGroup> findGroup(const KLV::Key& key) noexcept {
    auto bytes = key.bytes();
    if (bytes[0] == 0x06 && bytes[1] == 0x0E && bytes[2] == 0x2B && bytes[3] == 0x34) {
        bytes[5] = 0x7F;
    }
    return groups().find(Types::UniversalLabel(bytes));
}

/// All parts of the register of labels; each follows the one that it is part of.
inline RowValues<LabelBranch> branches() noexcept {
    return RowValues<LabelBranch>(registerTables().branches);
}

/// Other names of sets and properties.
inline RowValues<RegisteredAlias> aliases() noexcept {
    return RowValues<RegisteredAlias>(registerTables().aliases);
}

} // namespace Registers

} // namespace Corvid::MetaMetadata
