#include "host/mxf/Keys.h"

namespace Corvid::mxf {

namespace {

/// Compares the front of a key, the version byte left out; -1 stands for any byte.
template <std::size_t Size>
bool startsWith(const KLV::Key& key, const int (&front)[Size]) noexcept {
    static_assert(Size <= KLV::Key::length);
    for (std::size_t i = 0; i != Size; ++i) {
        if (i != 7 && front[i] >= 0 && key[i] != front[i]) {
            return false;
        }
    }
    return true;
}

constexpr int any = -1;

bool isFilePack(const KLV::Key& key) noexcept {
    return startsWith(
        key, {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x05, 0x01, any, 0x0d, 0x01, 0x02, 0x01, 0x01});
}

bool isEssence(const KLV::Key& key) noexcept {
    return startsWith(key, {0x06, 0x0e, 0x2b, 0x34, any, any, any, any, 0x0d, 0x01, 0x03, 0x01});
}

} // namespace

bool isPartitionPack(const KLV::Key& key) noexcept {
    return isFilePack(key) && key[13] >= 0x02 && key[13] <= 0x04;
}

bool isPrimerPack(const KLV::Key& key) noexcept { return isFilePack(key) && key[13] == 0x05; }

bool isRandomIndexPack(const KLV::Key& key) noexcept { return isFilePack(key) && key[13] == 0x11; }

bool isIndexTableSegment(const KLV::Key& key) noexcept {
    return KLV::isLocalSet(key) && startsWith(key, {0x06, 0x0e, 0x2b, 0x34, 0x02, any, 0x01, any,
                                                    0x0d, 0x01, 0x02, 0x01, 0x01, 0x10});
}

bool isFill(const KLV::Key& key) noexcept {
    return startsWith(
        key, {0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, any, 0x03, 0x01, 0x02, 0x10, 0x01});
}

bool endsHeaderMetadata(const KLV::Key& key) noexcept {
    return isPartitionPack(key) || isRandomIndexPack(key) || isIndexTableSegment(key) ||
           isEssence(key);
}

bool isSingleItem(const KLV::Key& key) noexcept {
    return startsWith(key, {0x06, 0x0e, 0x2b, 0x34, 0x01}) && !isFill(key);
}

KLV::Key partitionPackKey(unsigned char kind, unsigned char status) noexcept {
    return KLV::Key(std::array<unsigned char, KLV::Key::length>{0x06, 0x0e, 0x2b, 0x34, 0x02, 0x05,
                                                                0x01, 0x01, 0x0d, 0x01, 0x02, 0x01,
                                                                0x01, kind, status, 0});
}

const KLV::Key& primerPackKey() noexcept {
    static const KLV::Key key = partitionPackKey(0x05, 0x01);
    return key;
}

const KLV::Key& fillKey() noexcept {
    static const KLV::Key key(std::array<unsigned char, KLV::Key::length>{
        0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x02, 0x03, 0x01, 0x02, 0x10, 0x01, 0, 0, 0});
    return key;
}

} // namespace Corvid::mxf
