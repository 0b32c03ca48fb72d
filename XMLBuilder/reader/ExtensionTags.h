#pragma once

#include "XMLBuilder/format/Namespaces.h"
#include "XMLBuilder/reader/nodes/ChildSteps.h"
#include "host/klv/Key.h"
#include "host/metadata/PartitionDictionary.h"

#include <string_view>

namespace Corvid::XMLBuilder {

/// The local tags of the unknown properties of one document.
class ExtensionTags {
public:
    /// @param tags     borrowed.
    /// @param queries  knows all tags that the document names; null where all are kept before of()
    ///                 is called for a label. Borrowed.
    ExtensionTags(Metadata::PartitionDictionary& tags, DomQueries* queries) noexcept
        : tags_(tags), queries_(queries) {}

    /// The tag of an unknown property: the one that its element names, or else that of its label,
    /// for which the partition has one or makes one. No tag that the document names anywhere, or
    /// that the bytes of a dark set use, is made for a label, and none that was made before is
    /// taken for a name: else two properties would be one in a file.
    /// @param tag    as the element has it; empty for none.
    /// @param label  the same.
    /// @throws InvalidFormat  the tag, or without tag the label, is malformed or missing.
    /// @throws LimitExceeded  all dynamic tags are in use.
    Types::LocalTag of(std::u16string_view tag, std::u16string_view label);

    /// Sees to it that no label gets the tag that an element names; empty for none.
    void keepTag(std::u16string_view tag);
    /// The same for the tags that the bytes of a dark set use.
    void keepTagsIn(const KLV::Key& key, Types::ByteView bytes);
    /// The same of a dark set as a DOM has it.
    void keepTagsIn(const DocumentNode& darkSet);

private:
    Metadata::PartitionDictionary& tags_;
    DomQueries* queries_;
    bool namedAreKept_ = false;
};

} // namespace Corvid::XMLBuilder
