#pragma once

#include <cstddef>
#include <string>

namespace Corvid::Tool {

/// Reads all bytes of a file, a pipe or a device; "-" is standard input.
/// @param atMost  the bytes that it may have; no more is read of a device that never ends.
/// @param what    it is, for the message: "a dictionary".
/// @throws IOError        it can't be read.
/// @throws LimitExceeded  it has more bytes.
std::string readWhole(const std::string& path, std::size_t atMost, const char* what);

} // namespace Corvid::Tool
