#include "host/base/Attached.h"

namespace Corvid::Platform {

Attached::Content::~Content() = default;

} // namespace Corvid::Platform
