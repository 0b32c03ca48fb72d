#pragma once

#include "host/types/UuidMap.h"

namespace Corvid::Editing {

/// Which InstanceUID stands for which. One that is not entered stands for itself.
class Renaming {
public:
    void add(const Types::UUID& before, const Types::UUID& after) { names_[before] = after; }

    /// What stands for an identifier, or null for itself.
    const Types::UUID* find(const Types::UUID& before) const { return names_.find(before); }

    const Types::UUID& of(const Types::UUID& before) const {
        const Types::UUID* const found = names_.find(before);
        return found == nullptr ? before : *found;
    }

    /// Calls the function with each InstanceUID that was entered and the one that stands for it.
    template <class Function> void forEach(Function function) const { names_.forEach(function); }

private:
    Types::UuidMap<Types::UUID> names_;
};

} // namespace Corvid::Editing
