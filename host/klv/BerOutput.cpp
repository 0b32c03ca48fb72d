#include "host/klv/BerOutput.h"

#include <algorithm>

namespace Corvid::KLV {

unsigned char berOctets(std::uint64_t length, unsigned char wanted) noexcept {
    if (wanted <= 1 && length < 0x80) {
        return 1;
    }
    unsigned char least = 2;
    for (std::uint64_t rest = length >> 8; rest != 0; rest >>= 8) {
        ++least;
    }
    return std::clamp(wanted, least, static_cast<unsigned char>(9));
}

void writeBer(DataIO::DataSink& sink, std::uint64_t length, unsigned char wanted) {
    const unsigned char octets = berOctets(length, wanted);
    unsigned char field[9];
    if (octets == 1) {
        field[0] = static_cast<unsigned char>(length);
    } else {
        field[0] = static_cast<unsigned char>(0x80 + octets - 1);
        for (int i = octets - 1; i != 0; --i) {
            field[i] = static_cast<unsigned char>(length);
            length >>= 8;
        }
    }
    sink.write(field, octets);
}

} // namespace Corvid::KLV
