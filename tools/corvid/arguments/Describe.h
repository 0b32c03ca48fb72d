#pragma once

#include <string>

namespace CLI {
class App;
}

namespace Corvid::Tool {

/// The command line as JSON, for programs that write manual pages and completions: verbs, their
/// options and arguments, what each takes, and the exit statuses.
/// @param app  with all of its verbs. Borrowed.
std::string describe(const CLI::App& app);

} // namespace Corvid::Tool
