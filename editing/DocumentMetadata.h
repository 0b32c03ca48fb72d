#pragma once

#include "Corvid_Editing/Export.h"
#include "editing/MergedCopies.h"
#include "editing/WriteDocument.h"
#include "editing/supplement/SupplementOutcome.h"
#include "host/base/Exceptions.h"
#include "host/dataio/DataSource.h"
#include "host/metadata/PartitionMetadata.h"

#include <cstddef>
#include <string>
#include <vector>

namespace Corvid::Editing {

/// Which InstanceUIDs the sets of a document get.
enum class DocumentIdentifiers : unsigned char {
    written, ///< those that are in the document
    fresh,   ///< new ones
};

/// Something wrong with a document, or strange.
struct Mistake {
    std::size_t line;   ///< from 1; 0 where it is not known
    std::size_t column; ///< from 1; 0 where it is not known
    std::string text;   ///< UTF-8: the path of the element, what is there, what is expected
};

/// What a document holds. Movable.
struct DocumentMetadata {
    Templates::auto_ptr<Metadata::PartitionMetadata> metadata;
    MergedCopies copies; ///< what became of sets that the document holds more than once
    SupplementOutcome supplement;
    DocumentContent content;     ///< how the metadata became a document
    std::vector<Mistake> doubts; ///< the first values that fit the format but make no sense

    /// Whether something of the file was left out of the document on purpose.
    bool isPartial() const noexcept { return content.structuralOnly || content.start; }
};

/// What strict reading objects to in a document.
class CORVID_EDITING_EXPORT DocumentMistakes : public Exceptions::InvalidFormat {
public:
    /// @param mistakes  the first ones, in the order of the document; at least one.
    /// @param count     of all.
    DocumentMistakes(std::vector<Mistake> mistakes, std::size_t count);
    ~DocumentMistakes() override;

    /// The first ones, in the order of the document.
    const std::vector<Mistake>& mistakes() const noexcept { return mistakes_; }
    /// How many there are, listed or not.
    std::size_t count() const noexcept { return count_; }

private:
    std::vector<Mistake> mistakes_;
    std::size_t count_;
};

/// Reads a document of people into a partition of its own, strictly and as a stream, together with
/// the processing instructions in front of the root. References and sets have the identifiers that
/// are written.
///
/// @param source      read to its end. Borrowed.
/// @param dictionary  shared with the partition.
/// @throws DocumentMistakes  there is something wrong with it.
/// @throws ParseError        it is malformed; InvalidFormat  an instruction is; LimitExceeded  it
///                           holds more than the program takes, see docs/limits.md.
CORVID_EDITING_EXPORT DocumentMetadata readDocument(
    DataIO::DataSource& source, const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary,
    DocumentIdentifiers identifiers = DocumentIdentifiers::written);

} // namespace Corvid::Editing
