#pragma once

#include "tests/allocation/AllocationWatch.h"

namespace Corvid::Testing {

/// Starts Xerces-C and XQilla with a memory manager that reports to AllocationWatch what it is asked
/// for, and otherwise does as Xerces-C's own. Once per process, before the library starts them.
void watchXmlMemory();

/// Forgets the documents made so far.
void forgetDocuments() noexcept;

/// Releases the documents that were made since forgetDocuments() and are not released. A writer
/// call that gives its document up leaves it to the process: callers rely on that.
/// @return how many.
std::size_t releaseAbandonedDocuments(const AllocationWatch& watch);

} // namespace Corvid::Testing
