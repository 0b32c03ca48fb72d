#pragma once

#include "host/klv/Key.h"
#include "host/mxf/rewrite/Bytes.h"
#include "host/types/IdentifierTypes.h"

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Corvid::Editing {

/// What distinguishes the properties of a set: 'l' and the label, with its version byte as zero, or
/// 't' and the tag where no label is known.
using PropertyIdentity = std::array<Types::u8, 17>;

/// Which property of a set: one of the same in every copy of header metadata, whatever its tag.
struct PropertyPlace {
    PropertyIdentity identity{};
    std::size_t occurrence = 0; ///< where the set has several with that identity: 0 is the first

    friend bool operator<(const PropertyPlace& a, const PropertyPlace& b) noexcept {
        return a.identity < b.identity || (a.identity == b.identity && a.occurrence < b.occurrence);
    }
};

/// Whether copies of header metadata that are changed alike must have the same old value.
enum class OldValue : unsigned char {
    same,     ///< they must
    any,      ///< they need not, as copies that are open and closed differ in dates
    extended, ///< they need not, and get the last item of the new value at the end of theirs
};

/// A property that is there before, after, or both.
struct ChangedProperty {
    PropertyPlace place;
    std::string name; ///< in the dictionary; else its label, else its tag. UTF-8
    std::optional<Types::UniversalLabel> label; ///< nothing where no more than the tag is known
    std::optional<mxf::Bytes> before;           ///< its value; nothing where it is not there
    std::optional<mxf::Bytes> after;
    OldValue oldValue = OldValue::same;
};

/// Which set of a copy of header metadata.
struct SetPlace {
    KLV::Key key;                        ///< its version byte and coding take no part
    std::optional<Types::UUID> instance; ///< nothing for a set without InstanceUID
    std::size_t nth = 0;                 ///< among those with the same key and InstanceUID, from 0
    std::size_t alike = 1;               ///< how many of those there are before
};

/// How a set of timecode counts frames.
struct TimecodeCount {
    Types::u16 framesPerSecond = 0;
    bool dropFrame = false;
};

/// A set that is there before, after, or both.
struct ChangedSet {
    /// What becomes of it.
    enum class Kind : unsigned char { changed, added, removed };

    Kind kind = Kind::changed;
    SetPlace place;
    std::string name;                 ///< of its class in the dictionary, else its key. UTF-8
    std::optional<Types::UUID> owner; ///< of an added set: the set that refers to it strongly
    /// Those that differ; all of a set that is added or removed. The InstanceUID is not among them.
    std::vector<ChangedProperty> properties;
    /// How to read the StartTimecode, whether or not this changes; nothing in sets without it.
    std::optional<TimecodeCount> countBefore;
    std::optional<TimecodeCount> countAfter;
    std::size_t number = 0; ///< in the layout after, of a removed set in that before
};

/// A KLV that is no set or can't be taken apart, and is there before, after, or both.
struct ChangedDark {
    KLV::Key key;
    std::optional<mxf::Bytes> before; ///< its value; nothing where it is not there
    std::optional<mxf::Bytes> after;
    std::size_t number = 0; ///< as of a set
};

/// What makes one header metadata of another, in the order of the one after; what is removed is
/// last.
struct Changes {
    std::vector<ChangedSet> sets;
    std::vector<ChangedDark> dark;
    /// What belongs together, whether or not it differs: numbers in the layouts before and after.
    std::vector<std::pair<std::size_t, std::size_t>> pairs;

    bool empty() const noexcept { return sets.empty() && dark.empty(); }
};

} // namespace Corvid::Editing
