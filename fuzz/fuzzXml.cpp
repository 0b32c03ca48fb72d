#include "XMLBuilder/XML2Partition.h"
#include "fuzz/FuzzInput.h"
#include "host/base/Exceptions.h"
#include "host/metadata/PartitionMetadata.h"

#include <cstring>

using namespace Corvid;

namespace {

template <class Read> void read(Read readInto) {
    Metadata::PartitionMetadata partition(MetaMetadata::Dictionary::builtIn());
    try {
        readInto(partition);
    } catch (const Exceptions::BaseException&) {
        // Refused, as it should be.
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    read([&](Metadata::PartitionMetadata& partition) {
        XML2Partition::getPartitionMetadataFromBuffer(bytes, static_cast<unsigned>(size),
                                                      &partition);
    });
    read([&](Metadata::PartitionMetadata& partition) {
        Utf16Text text(size / 2, 0);
        std::memcpy(text.data(), bytes, size / 2 * 2);
        XML2Partition::getPartitionMetadataFromString(text, &partition);
    });
    return 0;
}
