#pragma once

#include "tests/support/MxfBuilder.h"

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace Corvid::Testing {

/// Numbers of structural sets that MxfBuilder.h does not name.
inline constexpr unsigned char sequenceSet = 0x0F;
inline constexpr unsigned char sourcePackageSet = 0x37;
inline constexpr unsigned char taggedValueSet = 0x3F;

/// A property of a set by its local tag.
using TaggedValue = std::pair<unsigned, Bytes>;

/// Header metadata that is put together set by set. Begins with a Preface (instance 1) that owns a
/// ContentStorage (instance 2); sets of a caller have greater numbers.
class MetadataText {
public:
    static constexpr unsigned storage = 2;
    static constexpr unsigned first = 16; ///< the least instance for callers

    /// A property of the Preface.
    MetadataText& preface(unsigned tag, Bytes value);
    /// A property of the ContentStorage.
    MetadataText& contentStorage(unsigned tag, Bytes value);
    MetadataText& add(unsigned char set, unsigned instance,
                      const std::vector<TaggedValue>& properties);
    /// Any bytes where a set may be.
    MetadataText& add(const Bytes& klvs);
    /// An entry of the primer pack beside those of the tags that the standard gives.
    MetadataText& primerEntry(unsigned tag, const Bytes& label);

    /// Primer pack and sets.
    Bytes metadata() const;
    /// A file of one partition.
    std::string file() const;

private:
    Bytes setOf(unsigned char set, unsigned instance, const std::vector<TaggedValue>& properties);

    std::vector<TaggedValue> preface_, storage_;
    std::set<unsigned> tags_;
    std::vector<std::pair<unsigned, Bytes>> entries_;
    Bytes sets_;
};

/// A label that no register has.
Bytes unknownLabel(unsigned number);
/// An array or batch of references to these instances.
Bytes references(const std::vector<unsigned>& instances);
/// count numbers from `first` on.
std::vector<unsigned> numbers(unsigned first, std::size_t count);

} // namespace Corvid::Testing
