#include "host/klv/Value.h"

#include "host/base/Exceptions.h"

#include <string>

namespace Corvid::KLV {

Value::Value(DataIO::DataSource& source, std::size_t size) {
    if (source.remaining() < size) {
        throw Exceptions::InvalidLength("a value of " + std::to_string(size) + " bytes, but only " +
                                            std::to_string(source.remaining()) + " are left",
                                        CORVID_HERE);
    }
    Templates::vector<unsigned char> bytes(size);
    const std::size_t got = source.read(bytes.data(), size);
    if (got != size) {
        throw Exceptions::InvalidLength("a value of " + std::to_string(size) +
                                            " bytes, but the source ended after " +
                                            std::to_string(got),
                                        CORVID_HERE);
    }
    slice_ = DataIO::Slice(bytes.data(), bytes.size());
}

} // namespace Corvid::KLV
