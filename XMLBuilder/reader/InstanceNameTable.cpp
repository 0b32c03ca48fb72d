#include "XMLBuilder/reader/InstanceNameTable.h"

#include "host/base/Exceptions.h"
#include "host/xmlutils/XmlText.h"

namespace Corvid::XMLBuilder {

const Types::UUID& InstanceNameTable::add(const Name& name, const Types::UUID& identifier) {
    auto* const text = static_cast<char16_t*>(
        memory_.allocate(name.text.size() * sizeof(char16_t), alignof(char16_t)));
    name.text.copy(text, name.text.size());
    const Entry& entry = entries_.emplace_back(Entry{{text, name.text.size()}, identifier});
    byName_.emplace(Name{name.hash, entry.written}, &entry.identifier);
    return entry.identifier;
}

bool InstanceNameTable::parse(const char16_t* text, Types::UUID& identifier) {
    try {
        identifier = Types::UUID(XMLUtils::fromXml(text), Types::dottedHexadecimal);
        return true;
    } catch (const Exceptions::InvalidFormat&) {
        return false;
    }
}

} // namespace Corvid::XMLBuilder
