#include "XMLBuilder/schema/SchemaTexts.h"

#include "XMLBuilder/schema/Schemas.h"
#include "host/dataio/Memory.h"
#include "host/xmlutils/InvalidCharacters.h"
#include "host/xmlutils/Serialise.h"

#include <algorithm>

namespace Corvid::XMLBuilder {

namespace {

std::string textOf(const xercesc::DOMNode* document) {
    XMLUtils::RefuseInvalidCharacters refuse;
    DataIO::Memory::MemoryDataSink sink;
    XMLUtils::serialise(document, XMLUtils::EncodingType::utf8, XMLUtils::Layout::indented, refuse,
                        sink);
    return {reinterpret_cast<const char*>(sink.rawBuffer()), sink.serializedSize()};
}

} // namespace

std::vector<XMLUtils::SchemaText> schemaTexts(const MetaMetadata::Dictionary& dictionary) {
    std::vector<XMLUtils::SchemaText> texts;
    for (const auto& schema : makeSchemas(dictionary)) {
        texts.push_back({schema.fileName, textOf(schema.document.get())});
    }
    const auto root = std::find_if(texts.begin(), texts.end(),
                                   [](const auto& text) { return text.fileName == "s377m.xsd"; });
    std::rotate(texts.begin(), root, root + 1);
    return texts;
}

} // namespace Corvid::XMLBuilder
