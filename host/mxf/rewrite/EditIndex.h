#pragma once

#include "host/mxf/rewrite/HeaderEdit.h"
#include "host/mxf/rewrite/HeaderLayout.h"

namespace Corvid::mxf {

/// What an edit does with each item of a layout.
class EditIndex {
public:
    /// @param layout, edit  borrowed.
    /// @throws InvalidArgument  the edit names what is not there, or names something twice.
    EditIndex(const HeaderLayout& layout, const HeaderEdit& edit);

    const SetChange* setChange(std::size_t item) const { return of(item).set; }
    const DarkChange* darkChange(std::size_t item) const { return of(item).dark; }
    bool removes(std::size_t item) const { return of(item).isRemoved; }
    /// The sets that are inserted after an item.
    const Templates::vector<const NewSet*>& newSets(std::size_t after) const {
        return of(after).after;
    }

    /// @throws InvalidArgument  the edit changes the directory of objects, its root, or the
    ///                          InstanceUID of a set, by which the directory knows it.
    void requireUntouched(std::size_t directory, std::size_t root) const;

private:
    struct Fate {
        const SetChange* set = nullptr;
        const DarkChange* dark = nullptr;
        bool isRemoved = false;
        Templates::vector<const NewSet*> after;
    };

    const Fate& of(std::size_t item) const;
    LayoutItem::Kind kindOf(std::size_t item) const;
    Fate& take(std::size_t item, LayoutItem::Kind kind);

    const HeaderLayout& layout_;
    const HeaderEdit& edit_;
    Templates::map<std::size_t, Fate> fates_;
};

/// The InstanceUID that a new set gets.
/// @throws InvalidArgument  it gets none.
Types::UUID instanceOf(const NewSet& set);

} // namespace Corvid::mxf
