#pragma once

#include <CLI/CLI.hpp>

namespace Corvid::Tool {

/// Adds the verb `help`.
/// @param wanted  gets the verb that is asked about, empty for all of them. Borrowed.
/// @return the verb.
CLI::App* declareHelp(CLI::App& app, std::string& wanted);

/// The help of a verb, or of the command for an empty name.
/// @throws UsageError  there is no such verb.
std::string helpOf(CLI::App& app, const std::string& verb);

/// Checks the first argument that is not an option.
/// @throws UsageError  it is not a verb; suggests the one that may be meant.
void checkVerb(CLI::App& app, int argc, const char* const* argv);

/// Why a command line can't be understood, with a suggestion or the place to look.
std::string usageText(CLI::App& app, const CLI::ParseError& error);

} // namespace Corvid::Tool
