#pragma once

#include <functional>

namespace Corvid::Tool {

/// Does work with Xerces-C and turns what that throws into the exceptions that guard() knows.
/// @throws InvalidFormat  in the place of an XMLException or a DOMException.
void translateXerces(const std::function<void()>& work);

} // namespace Corvid::Tool
