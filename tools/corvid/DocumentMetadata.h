#pragma once

#include "tools/corvid/MergeCopies.h"
#include "tools/corvid/supplement/ApplySupplement.h"

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
    MergedCopies copies; ///< what became of sets that the document holds more than once
    SupplementOutcome supplement;
    bool isPartial = false; ///< something of the file was left out of the document on purpose
};

/// Reads a document into a partition of its own, together with the processing instructions in
/// front of its root. References and sets have the identifiers that are
/// written; one that is no text of a UUID gets a new one, wherever it stands the same.
///
/// Needs Xerces-C; see XmlModule.h.
/// @throws BaseException  as XMLBuilder/reader/ReadDocument.h says, but messages do not name the
///     parser; LimitExceeded as mergeCopies().
DocumentMetadata readDocument(const unsigned char* bytes, std::size_t length,
                              const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary,
                              DocumentIdentifiers identifiers);

/// The bytes of a file that people say is a document.
/// @param path  "-" is standard input.
/// @throws IOError        it can't be read.
/// @throws InvalidFormat  it is empty, or an MXF file.
std::string loadDocumentText(const std::string& path);

/// Reads what loadDocumentText() gave.
/// @throws BaseException  as readDocument().
DocumentMetadata readDocumentText(const std::string& text,
                                  const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary,
                                  DocumentIdentifiers identifiers);

/// Reports what people may want to know of a document that was read: sets that it holds more than
/// once, elements without a meaning, instructions that do not fit it, dark sets whose local tags
/// nothing explains.
void report(const DocumentMetadata& document, Messages& messages);

} // namespace Corvid::Tool
