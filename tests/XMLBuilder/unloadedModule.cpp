// What unloading.cpp loads and unloads.

#include "XMLBuilder/XMLBuilder.h"
#include "host/metadata/PartitionMetadata.h"

using namespace Corvid;

extern "C" __attribute__((visibility("default"))) bool corvidTestWrite(
    Metadata::PartitionMetadata* partition) {
    Utf16Text text;
    XMLBuilder::partition2XML(partition, false, false, XMLUtils::EncodingType::utf8, text);
    return !text.empty();
}
