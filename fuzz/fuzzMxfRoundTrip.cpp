#include "fuzz/FuzzInput.h"
#include "fuzz/RoundTrips.h"
#include "host/base/Exceptions.h"

using namespace Corvid;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    try {
        Fuzzing::roundTripKlv(*Fuzzing::readMxf(bytes, size));
        Fuzzing::roundTripXml(*Fuzzing::readMxf(bytes, size));
        Fuzzing::roundTripLibrary(*Fuzzing::readMxf(bytes, size));
    } catch (const Exceptions::BaseException&) {
        // Refused, as it should be.
    }
    return 0;
}
