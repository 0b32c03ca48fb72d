#pragma once

#include "XMLBuilder/format/EmptyParts.h"
#include "host/metadata/PartitionDictionary.h"

#include <array>
#include <set>
#include <string>
#include <string_view>

namespace Corvid::MetaMetadata {
class AbstractMetaAttribute;
class MetaMetadataSet;
} // namespace Corvid::MetaMetadata

namespace Corvid::Metadata {
class MetadataSet;
}

namespace Corvid::XMLBuilder {

/// What distinguishes the properties of a set, in a file as in a document: 'l' and the label, with
/// its version byte as zero, or 't' and the local tag where no label is known.
using PropertyIdentity = std::array<Types::u8, 17>;

PropertyIdentity identityOf(const Types::UniversalLabel& label);
PropertyIdentity identityOf(const Types::LocalTag& tag);
/// @param tags  of the partition that the property is in.
PropertyIdentity identityOf(const MetaMetadata::AbstractMetaAttribute& attribute,
                            const Metadata::PartitionDictionary& tags);

/// What is known of a document besides its elements.
class Supplement {
public:
    using Properties = std::set<PropertyIdentity>;

    virtual ~Supplement() = default;

    /// Called for each set of the document, in the document's order, before it is filled.
    /// @param written  the set's identifier as the document has it; empty for none.
    /// @return the properties that are read with EmptyParts::values, the items of collections then
    ///         filled up with zeros to the longest. Null for none. Borrowed.
    virtual const Properties* enter(Metadata::MetadataSet& set, std::u16string_view written) = 0;

    /// Whether a set of a class may be without identifier, asked before the set is entered.
    virtual bool mayBeNameless(const MetaMetadata::MetaMetadataSet& setClass) const = 0;

    /// Whether links may lead to nothing, because a part of the metadata was left out on purpose.
    virtual bool isPartial() const = 0;

    /// Called for each element of the document that nothing is read from: a set or property of an
    /// unknown name, one at a place where it does not belong, one that is there already.
    /// @param name   as the document has it; UTF-8.
    /// @param place  where it is, to be put in front of a message; empty outside of sets.
    virtual void leaveOut(const std::string& name, const std::string& place) = 0;
};

} // namespace Corvid::XMLBuilder
