#pragma once

#include <string>
#include <vector>

namespace Corvid::Testing {

/// Who called for an allocation, innermost first, as AllocationTraces reports it.
using Callers = std::vector<std::string>;

/// A line for each.
std::string linesOf(const Callers& callers);

/// A call of Xerces-C or XQilla that does not release all when an allocation fails inside of it.
struct KnownLeak {
    const char* call;
    const char* reason;
    const char* handsOver = nullptr; ///< a call inside of it that gets something from Corvid
};

/// The call that leaks a block because an allocation fails inside of it.
/// @param callers  for the block.
/// @param failed   for the allocation that failed.
/// @return null where it is none that is known.
const KnownLeak* findKnownLeak(const Callers& callers, const Callers& failed);

/// Whether XQilla or Xerces-C end the process when such an allocation fails.
bool isKnownToCrash(const Callers& callers);

} // namespace Corvid::Testing
