#pragma once

#include <cstdint>
#include <filesystem>
#include <sys/types.h>

/// Counts the instructions of this process, where it runs under valgrind's callgrind.
namespace Corvid::Testing::Instructions {

/// Names the folder into which callgrind writes; its --callgrind-out-file is %p in there.
void useFolder(const std::filesystem::path& folder);

bool areCounted();
/// Begins to count, from zero.
void start();
/// Ends it.
std::uint64_t stop();
/// Removes what callgrind wrote at the end of a process.
void removeDumpOf(pid_t process);

} // namespace Corvid::Testing::Instructions
