#pragma once

#include "XMLBuilder/writer/DocumentPlan.h"
#include "host/metadata/PartitionMetadata.h"
#include "host/xmlutils/EncodingType.h"
#include "host/xmlutils/Layout.h"

#include <optional>

namespace Corvid::DataIO {
class DataSink;
}

namespace Corvid::XMLUtils {
class InvalidCharacters;
}

namespace Corvid::Editing {

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
    /// @param metadata  borrowed, not to change; afterwards as it was, but for entries that its
    ///                  primer pack lacked.
    /// @throws InvalidFormat  there is no Preface; BaseException  as XMLBuilder/XMLBuilder.h says.
    WrittenDocument(Metadata::PartitionMetadata& metadata, const DocumentContent& content);

    /// @throws BaseException  as XMLBuilder::writeDocumentText() does.
    void serialise(XMLUtils::EncodingType encoding, XMLUtils::Layout layout,
                   XMLUtils::InvalidCharacters& invalid, DataIO::DataSink& sink) const;

private:
    XMLBuilder::DocumentPlan plan_;
    std::string instructions_; ///< each on a line of its own
};

} // namespace Corvid::Editing
