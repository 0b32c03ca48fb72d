#include "tools/corvid/xml/XmlModule.h"

namespace Corvid::Tool {

const XmlModule& xmlModule() { return *corvidXmlModule(); }

} // namespace Corvid::Tool
