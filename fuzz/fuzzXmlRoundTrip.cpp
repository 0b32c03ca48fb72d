#include "fuzz/FuzzInput.h"
#include "fuzz/RoundTrips.h"
#include "host/base/Exceptions.h"
#include "tools/corvid/xml/LenientDocument.h"

using namespace Corvid;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    try {
        const auto read = Tool::readLeniently(bytes, size, MetaMetadata::Dictionary::builtIn(),
                                              Editing::DocumentIdentifiers::written);
        // As the command does: a document is written of a file.
        Fuzzing::roundTripXml(*Fuzzing::roundTripKlv(*read.metadata));
    } catch (const Exceptions::BaseException&) {
        // Refused, as it should be.
    }
    return 0;
}
