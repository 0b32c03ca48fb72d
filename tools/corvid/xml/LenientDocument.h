#pragma once

#include "editing/DocumentMetadata.h"

namespace Corvid::Tool {

/// The most bytes of a document that is read as a whole. Far more than anybody's header metadata;
/// in memory a document takes several times its size.
constexpr std::size_t greatestDocument = std::size_t{1024} * 1024 * 1024;

/// Reads a document as the library does, which takes what it finds, together with the processing
/// instructions in front of the root. References and sets have the identifiers that are written;
/// one that is no text of a UUID gets a new one, wherever it is the same.
///
/// Needs Xerces-C; see XmlModule.h.
/// @throws BaseException  as XMLBuilder/reader/dom/ReadDocument.h says, but messages do not name the
///     parser; LimitExceeded as mergeCopies().
Editing::DocumentMetadata readLeniently(
    const unsigned char* bytes, std::size_t length,
    const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary,
    Editing::DocumentIdentifiers identifiers);

/// The same of all that a source holds.
/// @throws LimitExceeded  it has more than greatestDocument bytes.
Editing::DocumentMetadata readLeniently(
    DataIO::DataSource& source, const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary,
    Editing::DocumentIdentifiers identifiers);

} // namespace Corvid::Tool
