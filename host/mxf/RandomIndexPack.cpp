#include "host/mxf/RandomIndexPack.h"

#include "host/base/Exceptions.h"
#include "host/klv/Triplet.h"
#include "host/mxf/Keys.h"
#include "host/types/FixedBytes.h"

namespace Corvid::mxf {

namespace {

constexpr std::size_t lengthSize = 4;
constexpr std::size_t entrySize = 12;

std::optional<RandomIndexPack> refuse(WarningSink& warnings, std::uint64_t offset,
                                      const char* why) {
    Warning warning(WarningKinds::randomIndexPack,
                    std::string("the random index pack ") + why + ", so it is not used");
    warning.offset = offset;
    warnings.warn(warning);
    return std::nullopt;
}

} // namespace

std::optional<RandomIndexPack> findRandomIndexPack(DataIO::ReadWindow& window,
                                                   WarningSink& warnings) {
    const std::uint64_t fileSize = window.source().size();
    if (fileSize < KLV::Key::length + 1 + lengthSize) {
        return std::nullopt;
    }
    const auto tail = window.view(fileSize - lengthSize, lengthSize);
    if (tail.size != lengthSize) {
        return std::nullopt;
    }
    const std::uint64_t packSize = Types::readBigEndian<Types::u32>(tail.data);
    if (packSize < KLV::Key::length + 1 + lengthSize || packSize > fileSize) {
        return std::nullopt;
    }
    const std::uint64_t offset = fileSize - packSize;
    const auto front = window.view(offset, KLV::Key::length);
    if (front.size != KLV::Key::length || !isRandomIndexPack(KLV::Key(front.data))) {
        return std::nullopt;
    }
    if (packSize > greatestRandomIndexPack) {
        return refuse(warnings, offset, "is longer than 16 MiB");
    }
    KLV::Triplet triplet;
    try {
        triplet = KLV::readTriplet(window, offset);
    } catch (const Exceptions::InvalidLength&) {
        return refuse(warnings, offset, "has a length that can't be read");
    }
    if (triplet.end() != fileSize || triplet.length.value < lengthSize ||
        (triplet.length.value - lengthSize) % entrySize != 0) {
        return refuse(warnings, offset, "has a length that does not fit its end");
    }
    const auto value =
        window.view(triplet.valueOffset(), static_cast<std::size_t>(triplet.length.value));
    if (value.size != triplet.length.value) {
        return std::nullopt; // the file has become shorter meanwhile
    }
    RandomIndexPack pack;
    pack.offset = offset;
    pack.entries.resize((value.size - lengthSize) / entrySize);
    const Types::u8* next = value.data;
    for (RandomIndexPack::Entry& entry : pack.entries) {
        entry.bodySid = Types::readBigEndian<Types::u32>(next);
        entry.offset = Types::readBigEndian<Types::u64>(next + 4);
        next += entrySize;
    }
    return pack;
}

} // namespace Corvid::mxf
