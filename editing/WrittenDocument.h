#pragma once

#include "XMLBuilder/writer/DocumentPlan.h"
#include "editing/WriteDocument.h"
#include "host/metadata/PartitionMetadata.h"
#include "host/xmlutils/EncodingType.h"
#include "host/xmlutils/Layout.h"

#include <string>

namespace Corvid::XMLUtils {
class InvalidCharacters;
}

namespace Corvid::Editing {

/// A document: what the library makes of a partition, and the processing
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
