#include "host/dictionary/DefinitionNames.h"

#include "host/base/Text.h"
#include "host/dictionary/MetaElement.h"

#include <cstdlib>

namespace Corvid::MetaMetadata {

namespace {

/// Whether zero-terminated UTF-16 text, or null, is the same as a text in UTF-8. Names are ASCII as
/// a rule, so most differ in the first units, and no text is made of them.
bool isSame(const unsigned short* text, std::string_view other) {
    if (text == nullptr) {
        return false;
    }
    std::size_t same = 0;
    while (same != other.size() && text[same] != 0 && text[same] < 0x80 &&
           text[same] == static_cast<unsigned char>(other[same])) {
        ++same;
    }
    return text[same] < 0x80 ? same == other.size() && text[same] == 0
                             : Platform::toUtf8(text + same) == other.substr(same);
}

} // namespace

std::string tagName(const MetaDefinition& definition) {
    const auto* const name = definition.attribute("XMLTagName");
    return name == nullptr ? "" : Platform::toUtf8(name);
}

std::string prefixedName(const MetaDefinition& definition) {
    const auto* const prefix = definition.attribute("XMLDefaultPrefix");
    return (prefix == nullptr ? "" : Platform::toUtf8(prefix) + ":") + tagName(definition);
}

bool isCalled(const MetaDefinition& definition, std::string_view name) {
    const auto colon = name.find(':');
    if (colon == std::string_view::npos) {
        return isSame(definition.attribute("XMLTagName"), name);
    }
    return isSame(definition.attribute("XMLTagName"), name.substr(colon + 1)) &&
           isSame(definition.attribute("XMLDefaultPrefix"), name.substr(0, colon));
}

unsigned long schemaIndex(const MetaElement& definition) {
    const auto* const text = definition.attribute("SchemaIndex");
    return text == nullptr ? 0 : std::strtoul(Platform::toUtf8(text).c_str(), nullptr, 10);
}

} // namespace Corvid::MetaMetadata
