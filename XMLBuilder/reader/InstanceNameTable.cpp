#include "XMLBuilder/reader/InstanceNameTable.h"

namespace Corvid::XMLBuilder {

const Types::UUID& InstanceNameTable::add(const Name& name, const Types::UUID& identifier) {
    auto* const text = static_cast<char16_t*>(
        memory_.allocate(name.text.size() * sizeof(char16_t), alignof(char16_t)));
    name.text.copy(text, name.text.size());
    return byName_.emplace(Name{name.hash, {text, name.text.size()}}, identifier).first->second;
}

} // namespace Corvid::XMLBuilder
