#pragma once

#include "host/metadata/PartitionDictionary.h"

#include <xercesc/dom/DOMElement.hpp>

namespace Corvid::XMLBuilder {

/// The local tags of the unknown properties of one document.
class ExtensionTags {
public:
    /// @param tags  borrowed.
    explicit ExtensionTags(Metadata::PartitionDictionary& tags) noexcept : tags_(tags) {}

    /// The tag that stands for an unknown property: the one that its element names, or else that of
    /// its label, for which the partition has one or makes one. No tag that the document names
    /// anywhere, or that the bytes of a dark set use, is made for a label, and none that was made
    /// before is taken for a name: else two properties would be one in a file.
    /// @throws InvalidFormat  the tag, or without tag the label, is malformed or missing.
    /// @throws LimitExceeded  all dynamic tags are in use.
    Types::LocalTag of(const xercesc::DOMElement& extension);

private:
    void keepNamed(const xercesc::DOMElement& root);
    void keep(const XMLCh* tag);
    void keepTagsOfDarkSets(const xercesc::DOMElement& root);

    Metadata::PartitionDictionary& tags_;
    bool namedAreKept_ = false;
};

} // namespace Corvid::XMLBuilder
