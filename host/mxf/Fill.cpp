#include "host/mxf/Fill.h"

#include "host/klv/BerOutput.h"
#include "host/mxf/Keys.h"

#include <algorithm>
#include <array>

namespace Corvid::mxf {

std::uint64_t fillUpToKag(std::uint64_t position, std::uint64_t kagSize) noexcept {
    if (kagSize <= 1 || position % kagSize == 0) {
        return 0;
    }
    std::uint64_t size = kagSize - position % kagSize;
    while (size < smallestFill) {
        size += kagSize;
    }
    return size;
}

void writeFill(DataIO::DataSink& sink, std::uint64_t size) {
    if (size == 0) {
        return;
    }
    // A length that needs more octets takes them from the value.
    const unsigned char octets = KLV::berOctets(size - smallestFill, packBerOctets);
    std::uint64_t left = size - KLV::Key::length - octets;
    fillKey().serialize(sink);
    KLV::writeBer(sink, left, octets);
    const std::array<unsigned char, 4096> zeros{};
    while (left != 0) {
        const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(left, zeros.size()));
        sink.write(zeros.data(), count);
        left -= count;
    }
}

} // namespace Corvid::mxf
