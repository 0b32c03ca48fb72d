#include "XMLBuilder/XML2Partition.h"

#include "XMLBuilder/reader/dom/ReadDocument.h"
#include "XMLBuilder/reader/dom/TranslateExceptions.h"
#include "host/xmlutils/UnicodeString.h"

namespace Corvid::XML2Partition {

using namespace XMLBuilder;

SetList getPartitionMetadataFromBuffer(const unsigned char* bytes, unsigned int length,
                                       Metadata::PartitionMetadata* partition) {
    InstanceNameTable names;
    return readBuffer(bytes, length, partition, names);
}

SetList getPartitionMetadataFromString(const Utf16Text& text,
                                       Metadata::PartitionMetadata* partition) {
    return translated(EntryPoint::string, [&] {
        const XMLUtils::UnicodeString document(text);
        return getPartitionMetadataFromBuffer(
            reinterpret_cast<const unsigned char*>(document.utf16()),
            static_cast<unsigned int>(document.utf16Size()), partition);
    });
}

SetList getPartitionMetadataFromFile(const unsigned short* path,
                                     Metadata::PartitionMetadata* partition) {
    InstanceNameTable names;
    return readFile(path, partition, names);
}

} // namespace Corvid::XML2Partition
