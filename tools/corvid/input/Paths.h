#pragma once

#include "inspection/query/ParsePath.h"

namespace Corvid::Tool {

/// Paths of the command line.
/// @throws UsageError  a text is no path.
std::vector<Inspection::Path> parsePaths(const std::vector<std::string>& texts,
                                         const MetaMetadata::Dictionary& dictionary);

/// Assignments, likewise.
std::vector<Inspection::Assignment> parseAssignments(const std::vector<std::string>& texts,
                                                     const MetaMetadata::Dictionary& dictionary);

} // namespace Corvid::Tool
