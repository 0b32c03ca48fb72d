#include "editing/ThroughXml.h"

#include "editing/DocumentMetadata.h"
#include "editing/WrittenDocument.h"
#include "host/base/Exceptions.h"
#include "host/dataio/Memory.h"
#include "host/xmlutils/InvalidCharacters.h"

namespace Corvid::Editing {

namespace {

const std::string unreadable = "its document can't be read: ";

} // namespace

Templates::auto_ptr<Metadata::PartitionMetadata> throughXml(Metadata::PartitionMetadata& metadata,
                                                            const DocumentContent& content) {
    DataIO::Memory::MemoryDataSink text;
    XMLUtils::ReplaceInvalidCharacters invalid(0);
    WrittenDocument(metadata, content)
        .serialise(XMLUtils::EncodingType::utf8, XMLUtils::Layout::compact, invalid, text);
    try {
        DataIO::Memory::MemoryDataSource document(text.rawBuffer(), text.serializedSize());
        return readDocument(document, metadata.partitionDictionary().dictionary(),
                            DocumentIdentifiers::written)
            .metadata;
    } catch (const Exceptions::ParseError& error) {
        throw Exceptions::ParseError(unreadable + Platform::toUtf8(error.message()), error.file(),
                                     error.line());
    } catch (const DocumentMistakes& error) {
        throw Exceptions::InvalidFormat(unreadable + Platform::toUtf8(error.message()),
                                        error.file(), error.line());
    }
}

} // namespace Corvid::Editing
