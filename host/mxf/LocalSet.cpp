#include "host/mxf/LocalSet.h"

#include "host/base/Exceptions.h"
#include "host/klv/BerInput.h"

namespace Corvid::mxf {

std::optional<LocalSet::Head> LocalSet::readHead(Types::ByteView bytes,
                                                 bool hasBerLengths) noexcept {
    static_assert(Head::greatestSize == sizeof Head::tag + KLV::BerLength::greatestOctets);
    constexpr std::size_t tagSize = sizeof Head::tag;
    Head head;
    if (bytes.size < tagSize) {
        return std::nullopt;
    }
    head.tag = Types::readBigEndian<Types::u16>(bytes.data);
    const Types::ByteView length{bytes.data + tagSize, bytes.size - tagSize};
    if (!hasBerLengths) {
        if (length.size < head.lengthOctets) {
            return std::nullopt;
        }
        head.valueSize = Types::readBigEndian<Types::u16>(length.data);
        return head;
    }
    try {
        const KLV::BerLength read = KLV::readBer(length.data, length.size);
        head.lengthOctets = read.octets;
        head.valueSize = read.value;
    } catch (const Exceptions::InvalidLength&) {
        return std::nullopt;
    }
    return head;
}

} // namespace Corvid::mxf
