#pragma once

#include "Corvid_Editing/Export.h"
#include "host/metadata/PartitionMetadata.h"

#include <optional>

namespace Corvid::DataIO {
class DataSink;
}

namespace Corvid::Editing {

/// What of a partition a document is to hold, and how.
struct DocumentContent {
    bool referencesAsValues = false;  ///< each set inside the property that refers to it
    bool structuralOnly = false;      ///< without sets that are no structural metadata
    std::optional<Types::UUID> start; ///< a set to begin with; nothing for the Preface
    bool hasInstructions = true;      ///< says also what the format has no place for
};

/// Writes a partition as a document in UTF-8, indented, with the processing instructions in front
/// that let readDocument() give back all of the metadata.
///
/// @param metadata  borrowed; afterwards as it was, but for entries that its primer pack lacked.
/// @param sink      has a part of the document after an exception. Borrowed.
/// @throws InvalidFormat  there is no Preface to begin with, or a text has a character that XML
///                        cannot hold.
/// @throws InvalidArgument  no set has the InstanceUID to start from.
CORVID_EDITING_EXPORT void writeDocument(Metadata::PartitionMetadata& metadata,
                                         const DocumentContent& content, DataIO::DataSink& sink);

} // namespace Corvid::Editing
