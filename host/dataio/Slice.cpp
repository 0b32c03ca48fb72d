#include "host/dataio/Slice.h"

namespace Corvid::DataIO {

Slice::Slice(const unsigned char* bytes, std::size_t size) : bytes_(bytes, bytes + size) {}

} // namespace Corvid::DataIO
