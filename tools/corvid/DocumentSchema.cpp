#include "tools/corvid/DocumentSchema.h"

#include "XMLBuilder/schema/Schemas.h"
#include "host/base/Exceptions.h"
#include "host/base/Text.h"
#include "host/dataio/Memory.h"
#include "host/xmlutils/InvalidCharacters.h"
#include "host/xmlutils/Serialise.h"
#include "host/xmlutils/XmlText.h"
#include "tools/corvid/Messages.h"

#include <algorithm>
#include <xercesc/sax/SAXParseException.hpp>

namespace Corvid::Tool {

namespace {

/// People mend some errors and try again.
constexpr std::size_t mostErrors = 20;

std::string textOf(const xercesc::DOMNode* document) {
    XMLUtils::RefuseInvalidCharacters refuse;
    DataIO::Memory::MemoryDataSink sink;
    XMLUtils::serialise(document, XMLUtils::EncodingType::utf8, XMLUtils::Layout::indented, refuse,
                        sink);
    return {reinterpret_cast<const char*>(sink.rawBuffer()), sink.serializedSize()};
}

std::vector<XMLUtils::ValidityError> errorsOf(const XMLUtils::SchemaValidator& validator,
                                              const unsigned char* bytes, std::size_t length) {
    try {
        return validator.validate(bytes, length, mostErrors + 1);
    } catch (const xercesc::SAXParseException& broken) {
        throw Exceptions::ParseError(XMLUtils::fromXml(broken.getMessage()), CORVID_HERE);
    }
}

} // namespace

std::vector<XMLUtils::SchemaText> documentSchemas(const MetaMetadata::Dictionary& dictionary) {
    std::vector<XMLUtils::SchemaText> texts;
    for (const auto& schema : XMLBuilder::makeSchemas(dictionary)) {
        texts.push_back({schema.fileName, textOf(schema.document.get())});
    }
    const auto root = std::find_if(texts.begin(), texts.end(),
                                   [](const auto& text) { return text.fileName == "s377m.xsd"; });
    std::rotate(texts.begin(), root, root + 1);
    return texts;
}

void validateDocument(const unsigned char* bytes, std::size_t length,
                      const MetaMetadata::Dictionary& dictionary, Messages& messages) {
    auto errors = errorsOf(XMLUtils::SchemaValidator(documentSchemas(dictionary)), bytes, length);
    if (errors.empty()) {
        return;
    }
    const bool more = errors.size() > mostErrors;
    errors.resize(std::min(errors.size(), mostErrors));
    for (const auto& error : errors) {
        messages.error(error.describe());
    }
    throw Exceptions::InvalidFormat("the document does not follow its schema in " +
                                        std::to_string(errors.size()) +
                                        (more                 ? " places and more"
                                         : errors.size() == 1 ? " place"
                                                              : " places") +
                                        "; corvid schema writes the schema",
                                    CORVID_HERE);
}

} // namespace Corvid::Tool
