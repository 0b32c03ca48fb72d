#include "tools/corvid/input/ReadWhole.h"

#include "host/base/Exceptions.h"
#include "host/dataio/OpenSource.h"

namespace Corvid::Tool {

std::string readWhole(const std::string& path, std::size_t atMost, const char* what) {
    auto source = DataIO::openSource(path);
    const auto size = source->available(0, atMost + 1);
    if (size > atMost) {
        throw Exceptions::LimitExceeded("can't read " + source->name() + ": more than " +
                                            std::to_string(atMost / (1024 * 1024)) +
                                            " MiB, the limit for " + what,
                                        CORVID_HERE);
    }
    std::string bytes(static_cast<std::size_t>(size), '\0');
    bytes.resize(source->readAt(0, reinterpret_cast<unsigned char*>(bytes.data()), bytes.size()));
    return bytes;
}

} // namespace Corvid::Tool
