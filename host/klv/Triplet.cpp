#include "host/klv/Triplet.h"

#include "host/base/Exceptions.h"

#include <string>

namespace Corvid::KLV {

Triplet readTriplet(DataIO::ReadWindow& window, std::uint64_t offset) {
    // The bytes after a short head may be essence, or not be there: ask for what the head needs.
    auto head = window.view(offset, Key::length + 1);
    unsigned octets = 1;
    if (head.size == Key::length + 1) {
        try {
            octets = berOctetsFromFirst(head.data[Key::length]);
        } catch (const Exceptions::InvalidLength& error) {
            throw Exceptions::InvalidLength("the KLV at byte " + std::to_string(offset) +
                                                " has a " + Platform::toUtf8(error.message()),
                                            CORVID_HERE);
        }
        head = window.view(offset, Key::length + octets);
    }
    if (head.size < Key::length + octets) {
        throw Exceptions::InvalidLength("the KLV at byte " + std::to_string(offset) +
                                            " ends after " + std::to_string(head.size) +
                                            " bytes, inside its key or length",
                                        CORVID_HERE);
    }
    Triplet result;
    result.key = Key(head.data);
    result.offset = offset;
    result.length = readBer(head.data + Key::length, octets);
    return result;
}

} // namespace Corvid::KLV
