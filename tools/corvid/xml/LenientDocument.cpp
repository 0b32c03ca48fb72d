#include "tools/corvid/xml/LenientDocument.h"

#include "XMLBuilder/reader/dom/ReadDocument.h"
#include "editing/CompleteDocument.h"
#include "editing/supplement/ApplySupplement.h"
#include "editing/supplement/SupplementText.h"

namespace Corvid::Tool {

namespace {

/// The message without the name of the parser's exception in front.
std::string messageOf(const Exceptions::ParseError& error) {
    const std::string message = Platform::toUtf8(error.message());
    const std::string parser = "class xercesc_";
    const auto colon = message.find(": ");
    return message.compare(0, parser.size(), parser) == 0 && colon != std::string::npos
               ? message.substr(colon + 2)
               : message;
}

} // namespace

Editing::DocumentMetadata readLeniently(
    const unsigned char* bytes, std::size_t length,
    const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary,
    Editing::DocumentIdentifiers identifiers) {
    Editing::DocumentMetadata document;
    document.metadata = Templates::auto_ptr<Metadata::PartitionMetadata>(
        new Metadata::PartitionMetadata(dictionary));
    const Editing::DocumentSupplement supplement = Editing::parseSupplement(
        Editing::instructionsInFront({reinterpret_cast<const char*>(bytes), length}));
    Editing::SupplementReader reader(supplement);
    reader.explainTags(document.metadata->partitionDictionary());
    XMLBuilder::InstanceNameTable names(XMLBuilder::WrittenIdentifiers::kept);
    try {
        XMLBuilder::readBuffer(bytes, length, document.metadata.get(), names,
                               XMLBuilder::Places::told, &reader);
    } catch (const Exceptions::ParseError& error) {
        throw Exceptions::ParseError(messageOf(error), error.file(), error.line());
    }
    complete(document, supplement, reader, identifiers);
    return document;
}

Editing::DocumentMetadata readLeniently(
    DataIO::DataSource& source, const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary,
    Editing::DocumentIdentifiers identifiers) {
    const std::uint64_t size = source.remaining();
    if (size > greatestDocument) {
        throw Exceptions::LimitExceeded("the document has " + std::to_string(size) +
                                            " bytes, expected at most " +
                                            std::to_string(greatestDocument),
                                        CORVID_HERE);
    }
    std::vector<unsigned char> bytes(static_cast<std::size_t>(size));
    bytes.resize(source.read(bytes.data(), bytes.size()));
    return readLeniently(bytes.data(), bytes.size(), dictionary, identifiers);
}

} // namespace Corvid::Tool
