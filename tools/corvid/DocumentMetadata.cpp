#include "tools/corvid/DocumentMetadata.h"

#include "XMLBuilder/reader/ReadDocument.h"
#include "host/base/Exceptions.h"
#include "host/mxf/Partitions.h"
#include "tools/corvid/CommandWarnings.h"
#include "tools/corvid/Messages.h"
#include "tools/corvid/ReadWhole.h"
#include "tools/corvid/RenameSets.h"

#include <algorithm>
#include <array>

namespace Corvid::Tool {

namespace {

/// Whether a file begins as an MXF file does, behind its run-in if it has one (SMPTE ST 377-1).
bool isMxf(const std::string& bytes) {
    constexpr std::array<char, 11> packKey = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x05,
                                              0x01, 0x01, 0x0d, 0x01, 0x02};
    const auto end =
        bytes.begin() +
        static_cast<std::ptrdiff_t>(std::min(bytes.size(), mxf::greatestRunIn + packKey.size()));
    return std::search(bytes.begin(), end, packKey.begin(), packKey.end()) != end;
}

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

DocumentMetadata readDocument(const unsigned char* bytes, std::size_t length,
                              const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary,
                              DocumentIdentifiers identifiers) {
    DocumentMetadata document{Templates::auto_ptr<Metadata::PartitionMetadata>(
                                  new Metadata::PartitionMetadata(dictionary)),
                              {}};
    XMLBuilder::InstanceNameTable names(XMLBuilder::WrittenIdentifiers::kept);
    XMLBuilder::readBuffer(bytes, length, document.metadata.get(), names, XMLBuilder::Places::told);
    document.copies = mergeCopies(*document.metadata);
    if (identifiers == DocumentIdentifiers::fresh) {
        renameSets(*document.metadata);
    }
    return document;
}

std::string loadDocumentText(const std::string& path) {
    std::string bytes = readWhole(path, greatestDocument, "a document");
    if (bytes.empty()) {
        throw Exceptions::InvalidFormat("the file is empty, expected an XML document", CORVID_HERE);
    }
    if (isMxf(bytes)) {
        throw Exceptions::InvalidFormat("this is an MXF file, expected an XML document; corvid "
                                        "to-xml makes one of it",
                                        CORVID_HERE);
    }
    return bytes;
}

DocumentMetadata readDocumentText(const std::string& text,
                                  const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary,
                                  DocumentIdentifiers identifiers) {
    try {
        return readDocument(reinterpret_cast<const unsigned char*>(text.data()), text.size(),
                            dictionary, identifiers);
    } catch (const Exceptions::ParseError& error) {
        throw Exceptions::ParseError(messageOf(error), error.file(), error.line());
    }
}

void report(const MergedCopies& copies, Messages& messages) {
    if (copies.equal != 0) {
        messages.note(std::to_string(copies.equal) + (copies.equal == 1 ? " set" : " sets") +
                      " that the document repeats without a difference " +
                      (copies.equal == 1 ? "was" : "were") + " left out");
    }
    for (const auto& copy : copies.unequal) {
        mxf::Warning warning(CommandWarnings::unequalCopies,
                             Platform::toUtf8(copy.identifier.toString()) +
                                 " is in the document more than once, with differences; all are "
                                 "kept");
        warning.set = copy.set;
        messages.warn(warning);
    }
}

} // namespace Corvid::Tool
