#pragma once

#include "host/types/UuidMap.h"

namespace Corvid::Editing {

/// New InstanceUIDs by those that they replace. One that is not entered stays.
class Renaming {
public:
    void add(const Types::UUID& before, const Types::UUID& after) { names_[before] = after; }

    /// What replaces an identifier, or null where it stays.
    const Types::UUID* find(const Types::UUID& before) const { return names_.find(before); }

    const Types::UUID& of(const Types::UUID& before) const {
        const Types::UUID* const found = names_.find(before);
        return found == nullptr ? before : *found;
    }

    /// How many were entered.
    std::size_t size() const noexcept { return names_.size(); }

    /// Calls the function with each InstanceUID that was entered and the one that replaces it.
    template <class Function> void forEach(Function function) const { names_.forEach(function); }

private:
    Types::UuidMap<Types::UUID> names_;
};

} // namespace Corvid::Editing
