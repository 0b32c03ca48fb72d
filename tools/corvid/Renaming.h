#pragma once

#include "host/types/IdentifierTypes.h"

#include <map>

namespace Corvid::Tool {

/// Which InstanceUID stands for which. One that is not entered stands for itself.
class Renaming {
public:
    void add(const Types::UUID& before, const Types::UUID& after) { names_[before] = after; }

    /// What stands for an identifier, or null for itself.
    const Types::UUID* find(const Types::UUID& before) const {
        const auto found = names_.find(before);
        return found == names_.end() ? nullptr : &found->second;
    }

    const Types::UUID& of(const Types::UUID& before) const {
        const auto found = names_.find(before);
        return found == names_.end() ? before : found->second;
    }

    auto begin() const noexcept { return names_.begin(); }
    auto end() const noexcept { return names_.end(); }

private:
    std::map<Types::UUID, Types::UUID> names_;
};

} // namespace Corvid::Tool
