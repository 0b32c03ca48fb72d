#pragma once

#include "Corvid_Editing/Export.h"
#include "host/types/IdentifierTypes.h"
#include "host/types/Timestamp.h"

#include <string>

namespace Corvid::Editing {

/// Who changes a file, and when.
struct Modification {
    std::string company; ///< UTF-8, as the other texts
    std::string product;
    std::string version;
    std::string platform;
    Types::UUID productUID;
    Types::Timestamp time; ///< UTC
};

/// Now, in UTC.
CORVID_EDITING_EXPORT Types::Timestamp currentTime();

} // namespace Corvid::Editing
