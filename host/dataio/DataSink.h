#pragma once

#include "Corvid/Export.h"

#include <cstddef>

namespace Corvid::DataIO {

/// Takes bytes in the order in which they are written.
class CORVID_EXPORT DataSink {
public:
    virtual ~DataSink();

    /// @throws IOError  the bytes can't be taken; how many were is not known.
    virtual void write(const unsigned char* bytes, std::size_t count) = 0;
};

} // namespace Corvid::DataIO
