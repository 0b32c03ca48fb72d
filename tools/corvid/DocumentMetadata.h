#pragma once

#include "tools/corvid/MergeCopies.h"

#include <cstddef>
#include <string>

namespace Corvid::Tool {

class Messages;

/// The most bytes of a document that the command reads. Far more than anybody's header metadata; in
/// memory a document takes several times its size.
constexpr std::size_t greatestDocument = std::size_t{1024} * 1024 * 1024;

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

/// The bytes of a file that people say is a document.
/// @param path  "-" is standard input.
/// @throws IOError        it can't be read.
/// @throws InvalidFormat  it is empty, or an MXF file.
std::string loadDocumentText(const std::string& path);

/// Reads what loadDocumentText() gave.
/// @throws BaseException  as readDocument(), but that what the parser refuses is told without
///     naming the parser.
DocumentMetadata readDocumentText(const std::string& text,
                                  const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary,
                                  DocumentIdentifiers identifiers);

/// Says what became of sets that stand in a document more than once: a note of those that were
/// merged, a warning for each that is unlike another.
void report(const MergedCopies& copies, Messages& messages);

} // namespace Corvid::Tool
