#pragma once

#include <functional>

namespace CLI {
class App;
}

/// The arguments of each verb.
namespace Corvid::Tool {

class Messages;

/// What a command line asks for. A verb's options live as long as its work.
using Work = std::function<void(Messages&)>;

Work declareToXml(CLI::App& verb);
Work declareToJson(CLI::App& verb);
Work declareFromXml(CLI::App& verb);
Work declareSchema(CLI::App& verb);

Work declareApply(CLI::App& verb);
Work declareSet(CLI::App& verb);
Work declareRecover(CLI::App& verb);

/// @param colours  whether results may be coloured; likewise below.
Work declareInfo(CLI::App& verb, bool colours);
Work declareGet(CLI::App& verb);
Work declareReport(CLI::App& verb);
Work declareDiff(CLI::App& verb);
Work declareCheck(CLI::App& verb, bool colours);
Work declareDictionary(CLI::App& verb, bool colours);

} // namespace Corvid::Tool
