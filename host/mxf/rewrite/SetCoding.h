#pragma once

#include "host/mxf/rewrite/HeaderEdit.h"
#include "host/mxf/rewrite/HeaderLayout.h"

namespace Corvid::mxf {

/// Gives tags to properties that are added to one copy of header metadata.
class CORVID_EXPORT TagGiver {
public:
    /// @param layout  borrowed.
    explicit TagGiver(const HeaderLayout& layout) : layout_(layout) {}

    /// The tag of a property: what the primer pack gives to its label; else, with a new entry of
    /// the primer pack, its static tag if that is free, or the highest dynamic one that is.
    /// @throws InvalidFormat  a new entry is needed, but there is no primer pack, or one that
    ///                        contradicts itself.
    /// @throws LimitExceeded  all dynamic tags are in use.
    Types::u16 tagOf(const NewProperty& property);

    bool hasNewEntries() const noexcept { return !entries_.empty(); }
    /// The value of the primer pack with the new entries at its end.
    Bytes primerValue() const;

private:
    Types::u16 freeTag(Types::u16 staticTag);

    const HeaderLayout& layout_;
    Templates::vector<std::pair<Types::u16, Types::UniversalLabel>> entries_;
    Templates::map<std::array<Types::u8, 16>, Types::u16> given_;
    Templates::map<Types::u16, bool> givenTags_;
    Types::u16 nextDynamicTag_ = 0xFFFF;
};

/// The value of a set with its changes. Properties that do not change keep order and bytes.
/// @throws InvalidArgument  there is no such property, or a change names one that another names.
/// @throws LimitExceeded    a value is longer than a property's length can say.
CORVID_EXPORT Bytes codeSet(const HeaderLayout& layout, const SetChange& change, TagGiver& tags);

/// The value of a new set.
/// @throws LimitExceeded  a value is longer than a property's length can say.
CORVID_EXPORT Bytes codeSet(const NewSet& set, TagGiver& tags);

} // namespace Corvid::mxf
