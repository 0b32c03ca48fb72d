#pragma once

#include "tests/growth/Growth.h"

namespace Corvid::Testing {

/// The table of docs/limits.md, in Markdown: for each kind of input the dimensions as rows, the
/// operations as columns.
std::string tableHead(InputKind kind);
/// @param growths  of one dimension.
std::string tableRow(const std::vector<Growth>& growths);

/// A table without its figures: what must be the same on the page. Lines that are no rows of a
/// table are left out.
std::string namesInTable(const std::string& table);

} // namespace Corvid::Testing
