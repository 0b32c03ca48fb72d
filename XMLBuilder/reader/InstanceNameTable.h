#pragma once

#include "host/types/IdentifierTypes.h"

#include <xercesc/util/XercesDefs.hpp>

#include <string>
#include <unordered_map>

namespace Corvid::XMLBuilder {

/// The identifiers of one document, as they are written there, and the InstanceUIDs that stand for
/// them in the partition. A reference and its target meet here, whichever is read first.
class InstanceNameTable {
public:
    using Entries = std::unordered_map<std::u16string, Types::UUID>;

    /// The InstanceUID of a written identifier. If it has none yet, it gets the one that make()
    /// returns.
    template <class Make> const Types::UUID& findOrAdd(const XMLCh* written, Make make) {
        const auto [entry, added] = entries_.try_emplace(written);
        if (added) {
            entry->second = make();
        }
        return entry->second;
    }

    Entries::const_iterator begin() const noexcept { return entries_.begin(); }
    Entries::const_iterator end() const noexcept { return entries_.end(); }
    std::size_t size() const noexcept { return entries_.size(); }

private:
    Entries entries_;
};

} // namespace Corvid::XMLBuilder
