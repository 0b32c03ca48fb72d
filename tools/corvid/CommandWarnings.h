#pragma once

#include "host/mxf/Warnings.h"

/// The kinds of warnings that only the command gives.
namespace Corvid::Tool::CommandWarnings {

#define CORVID_WARNING(name, code, scope, summary)                                                 \
    inline constexpr mxf::WarningKind name{code, mxf::WarningScope::scope, summary};
#include "tools/corvid/CommandWarnings.def"

} // namespace Corvid::Tool::CommandWarnings
