// How libFuzzer changes a file of KLV triplets: in the values of sets and properties, with lengths
// made to fit again. A file whose bytes are changed blindly is hardly ever read beyond its first
// wrong length.

#include "fuzz/Mutation.h"
#include "host/base/Exceptions.h"
#include "host/dataio/Memory.h"
#include "host/dataio/MemorySource.h"
#include "host/dataio/ReadWindow.h"
#include "host/klv/BerOutput.h"
#include "host/klv/Triplet.h"
#include "host/types/FixedBytes.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

using namespace Corvid;
using namespace Corvid::Fuzzing;
using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t identifierSize = 16;

struct Property {
    Types::u16 tag;
    Bytes value;
};

struct Packet {
    KLV::Key key;
    unsigned char lengthOctets;
    Bytes value;
};

/// The file in packets, and after them what is none.
struct File {
    std::vector<Packet> packets;
    Bytes rest;
};

File parse(const std::uint8_t* bytes, std::size_t size) {
    File file;
    DataIO::MemorySource source(bytes, size);
    DataIO::ReadWindow window(source);
    std::size_t next = 0;
    try {
        while (next != size) {
            const KLV::Triplet triplet = KLV::readTriplet(window, next);
            if (triplet.end() > size) {
                break;
            }
            file.packets.push_back({triplet.key, triplet.length.octets,
                                    Bytes(bytes + triplet.valueOffset(), bytes + triplet.end())});
            next = static_cast<std::size_t>(triplet.end());
        }
    } catch (const Exceptions::BaseException&) {
        // The rest is no packet.
    }
    file.rest.assign(bytes + next, bytes + size);
    return file;
}

Bytes join(const File& file) {
    DataIO::Memory::MemoryDataSink sink;
    for (const Packet& packet : file.packets) {
        packet.key.serialize(sink);
        KLV::writeBer(sink, packet.value.size(), packet.lengthOctets);
        sink.write(packet.value.data(), packet.value.size());
    }
    Bytes bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
    bytes.insert(bytes.end(), file.rest.begin(), file.rest.end());
    return bytes;
}

/// The properties of a local set; nothing where they do not fill it.
std::vector<Property> propertiesOf(const Packet& packet) {
    std::vector<Property> properties;
    const Bytes& value = packet.value;
    std::size_t next = 0;
    while (value.size() - next >= 4) {
        const auto tag = Types::readBigEndian<Types::u16>(value.data() + next);
        const auto size = Types::readBigEndian<Types::u16>(value.data() + next + 2);
        next += 4;
        if (value.size() - next < size) {
            return {};
        }
        properties.push_back({tag, Bytes(value.data() + next, value.data() + next + size)});
        next += size;
    }
    return next == value.size() ? properties : std::vector<Property>();
}

Bytes join(const std::vector<Property>& properties) {
    Bytes bytes;
    for (const Property& property : properties) {
        for (const std::size_t number : {std::size_t{property.tag}, property.value.size()}) {
            bytes.push_back(static_cast<std::uint8_t>(number >> 8));
            bytes.push_back(static_cast<std::uint8_t>(number));
        }
        bytes.insert(bytes.end(), property.value.begin(), property.value.end());
    }
    return bytes;
}

/// Makes a property refer to, or be called like, something that is there: an identifier of the
/// donor's takes the place of one.
void copyIdentifier(Property& to, const Bytes& from, Random& random) {
    if (from.size() < identifierSize || to.value.size() < identifierSize) {
        return;
    }
    // Behind the head of a collection, or alone.
    const std::size_t head = to.value.size() % identifierSize;
    const std::size_t item = below((to.value.size() - head) / identifierSize, random);
    std::memcpy(to.value.data() + head + item * identifierSize,
                from.data() + from.size() % identifierSize, identifierSize);
}

void mutateSet(File& file, Packet& packet, Random& random) {
    std::vector<Property> properties = propertiesOf(packet);
    std::vector<Property> donors = propertiesOf(oneOf(file.packets, random));
    if (properties.empty() || donors.empty()) {
        mutateBytes(packet.value);
        return;
    }
    Property& property = oneOf(properties, random);
    switch (below(5, random)) {
    case 0:
        rearrange(properties, random);
        break;
    case 1:
        properties.push_back(oneOf(donors, random));
        break;
    case 2:
        property.tag = oneOf(donors, random).tag;
        break;
    case 3:
        copyIdentifier(property, oneOf(donors, random).value, random);
        break;
    default:
        mutateBytes(property.value);
        property.value.resize(std::min<std::size_t>(property.value.size(), 0xFFFF));
    }
    packet.value = join(properties);
}

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* bytes, std::size_t size,
                                               std::size_t greatestSize, unsigned seed) {
    Random random(seed);
    File file = parse(bytes, size);
    const std::size_t kind = below(8, random);
    if (file.packets.empty() || kind == 0) {
        return LLVMFuzzerMutate(bytes, size, greatestSize);
    }
    if (kind == 1) {
        rearrange(file.packets, random);
    } else {
        mutateSet(file, oneOf(file.packets, random), random);
    }
    const Bytes mutated = join(file);
    if (mutated.size() > greatestSize) {
        return LLVMFuzzerMutate(bytes, size, greatestSize);
    }
    std::copy(mutated.begin(), mutated.end(), bytes);
    return mutated.size();
}
