#include "Corvid/Version.h"

namespace Corvid {

const char* version() noexcept { return CORVID_VERSION; }

} // namespace Corvid
