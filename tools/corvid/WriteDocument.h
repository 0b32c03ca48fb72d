#pragma once

#include "host/metadata/PartitionMetadata.h"
#include "host/xmlutils/EncodingType.h"
#include "host/xmlutils/Serialise.h"

#include <optional>
#include <xercesc/dom/DOMNode.hpp>

namespace Corvid::Tool {

/// What of a partition a document is to hold, and how.
struct DocumentContent {
    bool referencesAsValues = false;
    bool structuralOnly = false;      ///< without sets that are no structural metadata
    std::optional<Types::UUID> start; ///< a set to begin with; nothing for the Preface
};

/// The first Preface.
/// @throws InvalidFormat  there is none.
const Metadata::MetadataSet& prefaceOf(const Metadata::PartitionMetadata& metadata);

/// A document of the command: what the library makes of a partition, and the processing
/// instructions that say what the format has no place for.
class WrittenDocument {
public:
    /// @param metadata  borrowed; afterwards as it was, but for entries that its primer pack
    /// lacked.
    /// @throws InvalidFormat  there is no Preface; BaseException  as XMLBuilder/XMLBuilder.h says.
    WrittenDocument(Metadata::PartitionMetadata& metadata, const DocumentContent& content);

    /// @throws BaseException  as XMLUtils::serialise() does.
    void serialise(XMLUtils::EncodingType encoding, XMLUtils::Layout layout,
                   XMLUtils::InvalidCharacters& invalid, DataIO::DataSink& sink) const;

private:
    Templates::auto_ptr<xercesc::DOMNode> document_;
    std::string instructions_; ///< each on a line of its own
};

} // namespace Corvid::Tool
