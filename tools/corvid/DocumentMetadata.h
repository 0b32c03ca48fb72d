#pragma once

#include "XMLBuilder/reader/strict/Mistakes.h"
#include "host/base/Exceptions.h"
#include "host/dataio/DataSource.h"
#include "host/dataio/RandomAccessSource.h"
#include "tools/corvid/MergeCopies.h"
#include "tools/corvid/supplement/ApplySupplement.h"

#include <cstddef>
#include <string>

namespace Corvid::Tool {

class Messages;

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
    bool hasInstructions = false; ///< whether any of the instructions that to-xml writes is there
    bool isPartial = false;       ///< something of the file was left out of the document on purpose
    XMLBuilder::Mistakes doubts;  ///< values that fit the format but make no sense
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

/// A file that people say is a document.
class DocumentFile final : public DataIO::DataSource {
public:
    /// @param path  "-" is standard input.
    /// @throws IOError        it can't be read.
    /// @throws InvalidFormat  it is empty, or an MXF file.
    explicit DocumentFile(const std::string& path);

    std::size_t read(unsigned char* to, std::size_t count) override;
    std::uint64_t remaining() const override;

private:
    Templates::auto_ptr<DataIO::RandomAccessSource> file_;
    std::uint64_t position_ = 0;
};

/// Reports what people may want to know of a document that was read: sets that it holds more than
/// once, elements without a meaning, instructions that are missing or do not fit it, dark sets
/// whose local tags nothing explains.
void report(const DocumentMetadata& document, Messages& messages);

/// Reports each mistake as an error, in the order of the document.
void report(const DocumentMistakes& refusal, Messages& messages);

} // namespace Corvid::Tool
