#include "host/types/Jpeg2000.h"

namespace Corvid::Types {

namespace {

ByteView restOf(ByteView bytes, std::size_t head) { return {bytes.data + head, bytes.size - head}; }

} // namespace

J2KCodingStyleDefault::J2KCodingStyleDefault(u8 scod, u32 sGcod, const u8* spcod, u64 spcodLength)
    : Visitable(ByteView{}), spcod_(ByteView{spcod, spcodLength}) {
    bytes_.resize(head);
    bytes_[0] = scod;
    writeBigEndian(bytes_.data() + 1, sGcod);
    bytes_.insert(bytes_.end(), spcod, spcod + spcodLength);
}

J2KCodingStyleDefault::J2KCodingStyleDefault(ByteView bytes)
    : Visitable(bytes), spcod_(restOf(bytes, head)) {}

J2KQuantisationDefault::J2KQuantisationDefault(u8 sqcd, const u8* sPgcd, u64 sPgcdLength)
    : Visitable(ByteView{}), sPgcd_(ByteView{sPgcd, sPgcdLength}) {
    bytes_.push_back(sqcd);
    bytes_.insert(bytes_.end(), sPgcd, sPgcd + sPgcdLength);
}

J2KQuantisationDefault::J2KQuantisationDefault(ByteView bytes)
    : Visitable(bytes), sPgcd_(restOf(bytes, head)) {}

} // namespace Corvid::Types
