#include "tools/corvid/DocumentMetadata.h"

#include "XMLBuilder/reader/ReadDocument.h"
#include "host/base/Exceptions.h"
#include "host/mxf/LocalSet.h"
#include "host/mxf/Partitions.h"
#include "tools/corvid/CommandWarnings.h"
#include "tools/corvid/Messages.h"
#include "tools/corvid/ReadWhole.h"
#include "tools/corvid/RenameSets.h"
#include "tools/corvid/supplement/SupplementText.h"

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

/// As XMLBuilder::readBuffer(), but that messages do not name the parser.
void readSets(const unsigned char* bytes, std::size_t length, Metadata::PartitionMetadata& metadata,
              SupplementReader& reader) {
    XMLBuilder::InstanceNameTable names(XMLBuilder::WrittenIdentifiers::kept);
    try {
        XMLBuilder::readBuffer(bytes, length, &metadata, names, XMLBuilder::Places::told, &reader);
    } catch (const Exceptions::ParseError& error) {
        throw Exceptions::ParseError(messageOf(error), error.file(), error.line());
    }
}

} // namespace

DocumentMetadata readDocument(const unsigned char* bytes, std::size_t length,
                              const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary,
                              DocumentIdentifiers identifiers) {
    DocumentMetadata document;
    document.metadata = Templates::auto_ptr<Metadata::PartitionMetadata>(
        new Metadata::PartitionMetadata(dictionary));
    const DocumentSupplement supplement =
        parseSupplement(instructionsInFront({reinterpret_cast<const char*>(bytes), length}));
    SupplementReader reader(supplement);
    reader.explainTags(document.metadata->partitionDictionary());
    readSets(bytes, length, *document.metadata, reader);
    document.supplement = reader.apply(*document.metadata);
    document.isPartial = supplement.partial.has_value();
    CopyCounts copies;
    for (const auto& [set, count] : supplement.copies) {
        copies[set] = count;
    }
    document.copies = mergeCopies(*document.metadata, copies);
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
    return readDocument(reinterpret_cast<const unsigned char*>(text.data()), text.size(),
                        dictionary, identifiers);
}

namespace {

/// Warns of dark sets whose bytes use local tags that no primer entry explains.
void reportUnexplainedTags(const Metadata::PartitionMetadata& metadata, Messages& messages) {
    const auto& primer = metadata.partitionDictionary();
    std::size_t count = 0;
    std::string first;
    for (auto set = metadata.darkBegin(); set != metadata.darkEnd(); ++set) {
        if (!KLV::isLocalSet((*set)->key())) {
            continue;
        }
        mxf::LocalSet properties((*set)->key(),
                                 {(*set)->value()->begin(), (*set)->value()->size()});
        while (const auto property = properties.next()) {
            const Types::LocalTag tag(property->tag);
            if (!tag.isStaticLocalTag() && primer.find(tag, false) == nullptr) {
                first = ++count != 1
                            ? first
                            : "set " + Platform::toUtf8((*set)->key().toString()) + ": local tag " +
                                  Platform::toUtf8(tag.toString(Types::dottedHexadecimal));
                break;
            }
        }
    }
    if (count != 0) {
        messages.warn({CommandWarnings::unexplainedTag,
                       first + ": nothing in the document says what it means" +
                           (count == 1 ? ""
                                       : "; so it is with tags of " + std::to_string(count - 1) +
                                             " more dark sets")});
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

void report(const SupplementOutcome& supplement, Messages& messages) {
    for (const auto& [name, leftOut] : supplement.leftOut) {
        messages.warn(
            {CommandWarnings::leftOutElement,
             leftOut.firstPlace + "element " + name + " is not expected here, so it is left out" +
                 (leftOut.count == 1 ? ""
                                     : "; so it is with " + std::to_string(leftOut.count - 1) +
                                           " more of that name")});
    }
    if (supplement.missingSets != 0) {
        messages.note("processing instructions about " + std::to_string(supplement.missingSets) +
                      (supplement.missingSets == 1 ? " set" : " sets") +
                      " that the document does not hold are passed over");
    }
    for (const std::string& place : supplement.firstOverruled) {
        messages.note(place + ": the document was edited, so its processing instruction is passed "
                              "over");
    }
    if (const auto rest = supplement.overruled - supplement.firstOverruled.size(); rest != 0) {
        messages.note("the same for " + std::to_string(rest) + " more");
    }
}

} // namespace

void report(const DocumentMetadata& document, Messages& messages) {
    if (document.isPartial) {
        messages.note("the document holds a part of the metadata of its file; the rest was left "
                      "out on purpose");
    }
    report(document.supplement, messages);
    report(document.copies, messages);
    reportUnexplainedTags(*document.metadata, messages);
}

} // namespace Corvid::Tool
