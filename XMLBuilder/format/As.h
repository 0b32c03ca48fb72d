#pragma once

namespace Corvid::XMLBuilder {

/// Chooses an overload by a value type without a value of it.
template <class T> struct As {};

} // namespace Corvid::XMLBuilder
