#include "tools/corvid/DocumentMetadata.h"

#include "XMLBuilder/reader/ReadDocument.h"
#include "tools/corvid/RenameSets.h"

namespace Corvid::Tool {

DocumentMetadata readDocument(const unsigned char* bytes, std::size_t length,
                              const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary,
                              DocumentIdentifiers identifiers) {
    DocumentMetadata document{Templates::auto_ptr<Metadata::PartitionMetadata>(
                                  new Metadata::PartitionMetadata(dictionary)),
                              {}};
    XMLBuilder::InstanceNameTable names(XMLBuilder::WrittenIdentifiers::kept);
    XMLBuilder::readBuffer(bytes, length, document.metadata.get(), names);
    document.copies = mergeCopies(*document.metadata);
    if (identifiers == DocumentIdentifiers::fresh) {
        renameSets(*document.metadata);
    }
    return document;
}

} // namespace Corvid::Tool
