#include "XMLBuilder/reader/SetDefinitionIndex.h"

#include "host/dictionary/Dictionary.h"
#include "host/xmlutils/XmlText.h"

namespace Corvid::XMLBuilder {

SetDefinitionIndex::SetDefinitionIndex(const MetaMetadata::Dictionary& dictionary) {
    const auto end = dictionary.metaMetadataSetEnd();
    for (auto set = dictionary.metaMetadataSetBegin(); set != end; ++set) {
        definitions_.try_emplace(XMLUtils::toXml((*set)->attribute("XMLTagName")), *set);
    }
}

const MetaMetadata::MetaMetadataSet* SetDefinitionIndex::find(const char16_t* localName) const {
    const auto entry = definitions_.find(localName);
    return entry == definitions_.end() ? nullptr : entry->second;
}

} // namespace Corvid::XMLBuilder
