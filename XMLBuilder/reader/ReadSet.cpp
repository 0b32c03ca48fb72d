#include "XMLBuilder/reader/ReadSet.h"

#include "XMLBuilder/reader/DarkReader.h"
#include "XMLBuilder/reader/FromXMLMetadataSetVisitor.h"
#include "host/dictionary/MetaMetadataSet.h"
#include "host/metadata/PartitionMetadata.h"

namespace Corvid::XMLBuilder {

bool readSet(Reading& reading, const DocumentNode& element, SetList& sets) {
    const auto* definition = reading.findSet(element);
    if (definition == nullptr) {
        return false;
    }
    auto& set = reading.makeSet(*definition, element);
    sets.push_back(&set);
    FromXMLMetadataSetVisitor reader(element, reading);
    set.accept(reader);
    return true;
}

void readChildOfRoot(Reading& reading, const DocumentNode& child, SetList& sets) {
    if (readSet(reading, child, sets)) {
        return;
    }
    if (reading.isNamed(child, Names::groups, Names::floatingDarkMetadata)) {
        readFloatingContainer(reading, child, sets);
    } else if (reading.strictness() != nullptr) {
        reading.strictness()->refuseSet(child);
    } else {
        reading.leaveOut(child);
    }
}

} // namespace Corvid::XMLBuilder
