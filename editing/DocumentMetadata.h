#pragma once

#include "XMLBuilder/reader/strict/Mistakes.h"
#include "editing/MergeCopies.h"
#include "editing/supplement/ApplySupplement.h"
#include "host/base/Exceptions.h"
#include "host/dataio/DataSource.h"

#include <cstddef>
#include <string>

namespace Corvid::Editing {

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
    bool isPartial = false;      ///< something of the file was left out of the document on purpose
    XMLBuilder::Mistakes doubts; ///< values that fit the format but make no sense
};

/// What strict reading objects to in a document.
class DocumentMistakes : public Exceptions::InvalidFormat {
public:
    explicit DocumentMistakes(const XMLBuilder::Mistakes& mistakes);

    const XMLBuilder::Mistakes& mistakes() const noexcept { return mistakes_; }

private:
    XMLBuilder::Mistakes mistakes_;
};

/// Reads a document of people into a partition of its own, strictly and as a stream, together with
/// the processing instructions in front of the root. References and sets have the identifiers that
/// are written.
///
/// @throws DocumentMistakes  there is something wrong with it.
/// @throws ParseError        it is malformed; InvalidFormat, LimitExceeded as mergeCopies() and
///                           parseSupplement().
DocumentMetadata readDocument(DataIO::DataSource& source,
                              const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary,
                              DocumentIdentifiers identifiers);

/// Gives a partition that a document was read into what the instructions say, makes one set of
/// copies, and new identifiers where they are wanted.
/// @param reader  that the document was read with.
void complete(DocumentMetadata& document, const DocumentSupplement& supplement,
              SupplementReader& reader, DocumentIdentifiers identifiers);

} // namespace Corvid::Editing
