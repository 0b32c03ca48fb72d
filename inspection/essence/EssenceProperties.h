#pragma once

#include "inspection/StructuralLabels.h"

namespace Corvid::Inspection::Structural {

// clang-format off
#define CORVID_ESSENCE_PROPERTY(constant, Type, item, name) \
    constexpr Property<Types::Type> constant{item};
#include "inspection/essence/EssenceProperties.def"
// clang-format on

} // namespace Corvid::Inspection::Structural
