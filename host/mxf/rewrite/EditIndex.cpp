#include "host/mxf/rewrite/EditIndex.h"

#include "host/base/Exceptions.h"
#include "host/metadata/MetadataSet.h"
#include "host/mxf/Keys.h"

namespace Corvid::mxf {

namespace {

using Kind = LayoutItem::Kind;

[[noreturn]] void refuse(const std::string& why) {
    throw Exceptions::InvalidArgument("the edit " + why, CORVID_HERE);
}

bool isInstanceUID(const PropertyName& property, const HeaderLayout& layout) {
    const auto* tag = std::get_if<Types::u16>(&property.name);
    const auto* label =
        tag == nullptr ? std::get_if<Types::UniversalLabel>(&property.name) : layout.label(*tag);
    return label != nullptr ? Metadata::Structural::isInstanceUID(*label)
                            : tag != nullptr && *tag == 0x3C0A;
}

} // namespace

EditIndex::EditIndex(const HeaderLayout& layout, const HeaderEdit& edit)
    : layout_(layout), edit_(edit) {
    for (const SetChange& change : edit.changedSets) {
        take(change.item, Kind::set).set = &change;
    }
    for (const DarkChange& change : edit.changedDark) {
        take(change.item, Kind::dark).dark = &change;
    }
    for (const std::size_t item : edit.removed) {
        take(item, kindOf(item) == Kind::dark ? Kind::dark : Kind::set).isRemoved = true;
    }
    for (const NewSet& set : edit.newSets) {
        kindOf(set.after);
        if (!KLV::isLocalSet(set.key) || endsHeaderMetadata(set.key)) {
            refuse("inserts a set with the key " + Platform::toUtf8(set.key.toString()) +
                   ", which is not that of a local set");
        }
        fates_[set.after].after.push_back(&set);
    }
}

const EditIndex::Fate& EditIndex::of(std::size_t item) const {
    static const Fate untouched;
    const auto found = fates_.find(item);
    return found == fates_.end() ? untouched : found->second;
}

Kind EditIndex::kindOf(std::size_t item) const {
    if (item >= layout_.items().size()) {
        refuse("names item " + std::to_string(item) + ", the last is " +
               std::to_string(layout_.items().size() - 1));
    }
    return layout_.items()[item].kind;
}

EditIndex::Fate& EditIndex::take(std::size_t item, Kind kind) {
    if (kindOf(item) != kind) {
        refuse("names item " + std::to_string(item) + ", which is no " +
               (kind == Kind::set ? "set" : "dark KLV"));
    }
    Fate& fate = fates_[item];
    if (fate.set != nullptr || fate.dark != nullptr || fate.isRemoved) {
        refuse("names item " + std::to_string(item) + " twice");
    }
    return fate;
}

void EditIndex::requireUntouched(std::size_t directory, std::size_t root) const {
    for (const std::size_t item : {directory, root}) {
        if (setChange(item) != nullptr || darkChange(item) != nullptr || removes(item)) {
            refuse("changes the directory of the objects or its root set, which follow by "
                   "themselves");
        }
    }
    for (const SetChange& change : edit_.changedSets) {
        for (const PropertyChange& property : change.properties) {
            if (isInstanceUID(property.property, layout_)) {
                refuse("changes the InstanceUID of a set that the directory of the objects lists");
            }
        }
    }
}

Types::UUID instanceOf(const NewSet& set) {
    for (const NewProperty& property : set.properties) {
        if (Metadata::Structural::isInstanceUID(property.label) &&
            Types::UUID::fits(viewOf(property.value))) {
            return Types::UUID(viewOf(property.value));
        }
    }
    refuse("inserts a set without InstanceUID, so the directory of the objects can't list it");
}

} // namespace Corvid::mxf
