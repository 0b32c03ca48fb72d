#include "XMLBuilder/reader/InstanceNameTable.h"

#include "host/base/Exceptions.h"
#include "host/xmlutils/XmlText.h"

namespace Corvid::XMLBuilder {

bool InstanceNameTable::parse(const XMLCh* text, Types::UUID& identifier) {
    try {
        identifier = Types::UUID(XMLUtils::fromXml(text), Types::dottedHexadecimal);
        return true;
    } catch (const Exceptions::InvalidFormat&) {
        return false;
    }
}

} // namespace Corvid::XMLBuilder
