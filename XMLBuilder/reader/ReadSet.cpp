#include "XMLBuilder/reader/ReadSet.h"

#include "XMLBuilder/reader/FromXMLMetadataSetVisitor.h"
#include "host/dictionary/MetaMetadataSet.h"
#include "host/metadata/PartitionMetadata.h"

namespace Corvid::XMLBuilder {

bool readSet(Reading& reading, const xercesc::DOMElement& element, SetList& sets) {
    const auto* definition = reading.sets().find(element.getLocalName());
    if (definition == nullptr) {
        return false;
    }
    auto& set = reading.partition().createMetadataSet(definition->key());
    sets.push_back(&set);
    FromXMLMetadataSetVisitor reader(element, reading);
    set.accept(reader);
    return true;
}

} // namespace Corvid::XMLBuilder
