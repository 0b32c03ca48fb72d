#include "host/klv/BerInput.h"

#include "host/base/Exceptions.h"

#include <string>

namespace Corvid::KLV {

namespace {

constexpr unsigned char longForm = 0x80;

} // namespace

unsigned berOctetsFromFirst(unsigned char first) {
    if (first < longForm) {
        return 1;
    }
    if (first == longForm) {
        throw Exceptions::InvalidLength(
            "BER length of the indefinite form (0x80), expected a definite one", CORVID_HERE);
    }
    const unsigned octets = 1u + (first & ~longForm);
    if (octets > BerLength::greatestOctets) {
        throw Exceptions::InvalidLength(
            "BER length of " + std::to_string(octets) + " bytes, expected at most 9", CORVID_HERE);
    }
    return octets;
}

BerLength readBer(const unsigned char* bytes, std::size_t size) {
    const unsigned octets = size == 0 ? 1 : berOctetsFromFirst(bytes[0]);
    if (size < octets) {
        throw Exceptions::InvalidLength("BER length of " + std::to_string(octets) +
                                            " bytes, but only " + std::to_string(size) +
                                            " are left",
                                        CORVID_HERE);
    }
    BerLength result;
    result.octets = static_cast<unsigned char>(octets);
    result.value = octets == 1 ? bytes[0] : 0;
    for (unsigned i = 1; i < octets; ++i) {
        result.value = result.value << 8 | bytes[i];
    }
    return result;
}

} // namespace Corvid::KLV
