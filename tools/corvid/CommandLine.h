#pragma once

#include <functional>
#include <string>

namespace Corvid::Tool {

class Messages;

/// What a command line asks for.
struct Command {
    std::function<void(Messages&)> run; ///< the work; empty where there is none to do
    std::string text;                   ///< help or version, for standard output
};

/// Understands a command line.
/// @param colours  whether results may be coloured.
/// @throws UsageError  it can't be understood.
Command parseCommandLine(int argc, const char* const* argv, bool colours);

} // namespace Corvid::Tool
