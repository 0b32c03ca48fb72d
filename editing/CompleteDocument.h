#pragma once

#include "editing/DocumentMetadata.h"

namespace Corvid::Editing {

struct DocumentSupplement;
class SupplementReader;

/// Gives a partition that a document was read into what the instructions say, makes one set of
/// copies, and new identifiers where they are wanted.
/// @param reader  that the document was read with.
void complete(DocumentMetadata& document, const DocumentSupplement& supplement,
              SupplementReader& reader, DocumentIdentifiers identifiers);

} // namespace Corvid::Editing
