#pragma once

#include "host/klv/Key.h"
#include "host/mxf/rewrite/Bytes.h"
#include "host/types/IdentifierTypes.h"

#include <optional>
#include <variant>

namespace Corvid::mxf {

/// Which property of a set: by its label, as the primer pack of the copy gives it to a tag, or by
/// the tag. The version byte of a label takes no part.
struct PropertyName {
    std::variant<Types::UniversalLabel, Types::u16> name;
    std::size_t occurrence = 0; ///< where the set has several of that name: 0 is the first
};

/// Gives a property another value or removes it.
struct PropertyChange {
    PropertyName property;
    std::optional<Bytes> value; ///< nothing removes the property
};

/// A property that a set gets at its end.
struct NewProperty {
    Types::UniversalLabel label;
    Bytes value;
    /// The tag that the standard gives to the label; 0 for none. The primer pack's own counts more,
    /// and where the primer pack gives this one to another label, a dynamic one takes its place.
    Types::u16 staticTag = 0;
};

/// Changes of one set. Properties that are not named keep bytes and order.
struct SetChange {
    std::size_t item = 0; ///< the set's number in the layout
    Templates::vector<PropertyChange> properties;
    Templates::vector<NewProperty> added;
};

/// A set that is inserted.
struct NewSet {
    KLV::Key key;
    /// The number in the layout of what it comes after; of several with one number, the first is
    /// the first.
    std::size_t after = 0;
    Templates::vector<NewProperty> properties;
    unsigned char lengthOctets = 4; ///< of its BER length, or more where that needs more
};

/// Another value for a KLV that is no set or can't be taken apart.
struct DarkChange {
    std::size_t item = 0; ///< its number in the layout
    Bytes value;
};

/// Changes of one copy of header metadata. An item is named in one of the lists, once at most.
struct HeaderEdit {
    Templates::vector<SetChange> changedSets;
    Templates::vector<std::size_t> removed; ///< sets and dark KLVs, by their numbers in the layout
    Templates::vector<NewSet> newSets;
    Templates::vector<DarkChange> changedDark;
};

} // namespace Corvid::mxf
