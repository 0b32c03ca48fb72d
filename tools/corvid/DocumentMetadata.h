#pragma once

#include "tools/corvid/MergeCopies.h"

namespace Corvid::Tool {

/// Which InstanceUIDs the sets of a document get.
enum class DocumentIdentifiers : unsigned char {
    written, ///< those that stand in the document
    fresh,   ///< new ones
};

/// What a document holds.
struct DocumentMetadata {
    Templates::auto_ptr<Metadata::PartitionMetadata> metadata;
    MergedCopies copies; ///< what became of sets that stand in the document more than once
};

/// Reads a document into a partition of its own. References and sets have the identifiers that are
/// written; one that is no text of a UUID gets a new one, wherever it stands the same.
///
/// Needs Xerces-C; see XmlModule.h.
/// @throws BaseException  as XMLBuilder/reader/ReadDocument.h says; LimitExceeded as mergeCopies().
DocumentMetadata readDocument(const unsigned char* bytes, std::size_t length,
                              const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary,
                              DocumentIdentifiers identifiers);

} // namespace Corvid::Tool
