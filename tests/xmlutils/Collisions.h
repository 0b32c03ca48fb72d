#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace Corvid::XMLUtils::Testing {

/// Different names of the same length whose hash in Xerces-C is the same.
std::vector<std::string> collidingNames(std::size_t count);

/// Names of that length whose hashes have nothing in common.
std::vector<std::string> plainNames(std::size_t count, std::size_t length);

} // namespace Corvid::XMLUtils::Testing
