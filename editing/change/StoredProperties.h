#pragma once

#include "XMLBuilder/reader/Supplement.h"
#include "editing/change/Changes.h"
#include "host/dictionary/Dictionary.h"
#include "host/mxf/rewrite/HeaderEdit.h"
#include "host/mxf/rewrite/HeaderLayout.h"

#include <map>

namespace Corvid::Editing {

/// A property as one copy of header metadata has it.
struct StoredProperty {
    mxf::PropertyName name; ///< by its tag
    std::optional<Types::UniversalLabel> label;
    Types::ByteView value; ///< of the layout
};

/// The properties of a set by their places, the InstanceUID that the set is known by left out.
///
/// A property is known by the label that the primer pack gives to its tag, else by the label that the
/// tag has for good, else by its tag.
using StoredProperties = std::map<PropertyPlace, StoredProperty>;

StoredProperties storedProperties(const mxf::HeaderLayout& layout, const mxf::LayoutItem& set,
                                  const MetaMetadata::Dictionary& dictionary);

/// What people call a property.
std::string nameOf(const PropertyPlace& place, const std::optional<Types::UniversalLabel>& label,
                   const MetaMetadata::Dictionary& dictionary);

/// What people call the class of a set.
std::string nameOf(const KLV::Key& key, const MetaMetadata::Dictionary& dictionary);

/// The sets of one copy by what distinguishes them.
class StoredSets {
public:
    /// The numbers in the layout of the sets with one key and InstanceUID, in the order of the
    /// copy.
    using Numbers = std::vector<std::size_t>;
    /// Key, whether there is an InstanceUID, and that.
    using Identity = std::array<Types::u8, 33>;

    explicit StoredSets(const mxf::HeaderLayout& layout);

    const std::map<Identity, Numbers>& all() const noexcept { return sets_; }
    /// Null where there is none.
    const Numbers* find(const KLV::Key& key, const std::optional<Types::UUID>& instance) const;

private:
    std::map<Identity, Numbers> sets_;
};

} // namespace Corvid::Editing
