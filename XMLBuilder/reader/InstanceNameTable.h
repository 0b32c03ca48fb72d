#pragma once

#include "host/types/IdentifierTypes.h"

#include <xercesc/util/XercesDefs.hpp>

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace Corvid::XMLBuilder {

/// What the InstanceUIDs of a partition have to do with the identifiers of the document.
enum class WrittenIdentifiers : unsigned char {
    replaced, ///< every set gets an InstanceUID that nobody else has
    kept,     ///< a written identifier is the InstanceUID, wherever it is the text of one
};

/// The identifiers of one document, as they are written there, and the InstanceUIDs that stand for
/// them in the partition. A reference and its target meet here, whichever is read first.
class InstanceNameTable {
public:
    using Entries = std::map<std::u16string, Types::UUID, std::less<>>;

    explicit InstanceNameTable(WrittenIdentifiers written = WrittenIdentifiers::replaced) noexcept
        : written_(written) {}

    /// The InstanceUID of a written identifier. If it has none yet, it gets itself where those that
    /// are written are kept, else the one that make() returns.
    template <class Make> const Types::UUID& findOrAdd(const XMLCh* written, Make make) {
        const std::u16string_view name = written;
        const auto place = entries_.lower_bound(name);
        if (place != entries_.end() && place->first == name) {
            return place->second;
        }
        Types::UUID identifier;
        if (written_ == WrittenIdentifiers::replaced || !parse(written, identifier)) {
            identifier = make();
        }
        return entries_.emplace_hint(place, name, identifier)->second;
    }

    Entries::const_iterator begin() const noexcept { return entries_.begin(); }
    Entries::const_iterator end() const noexcept { return entries_.end(); }
    std::size_t size() const noexcept { return entries_.size(); }

private:
    /// @return false where the text is not that of an identifier, which stays as it was.
    static bool parse(const XMLCh* text, Types::UUID& identifier);

    WrittenIdentifiers written_;
    Entries entries_;
};

} // namespace Corvid::XMLBuilder
