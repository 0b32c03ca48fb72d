#include "XMLBuilder/reader/Supplement.h"

#include "host/dictionary/AbstractMetaAttribute.h"
#include "host/dictionary/MetaElement.h"

#include <algorithm>

namespace Corvid::XMLBuilder {

namespace {

template <class Bytes> PropertyIdentity identity(Types::u8 kind, const Bytes& bytes) {
    PropertyIdentity result{kind};
    std::copy(bytes.begin(), bytes.end(), result.begin() + 1);
    return result;
}

} // namespace

PropertyIdentity identityOf(const Types::UniversalLabel& label) {
    return identity('l', label.withoutVersion());
}

PropertyIdentity identityOf(const Types::LocalTag& tag) { return identity('t', tag.bytes()); }

PropertyIdentity identityOf(const MetaMetadata::AbstractMetaAttribute& attribute,
                            const Metadata::PartitionDictionary& tags) {
    const auto& facts = attribute.facts();
    if (facts.definition != nullptr) {
        return identityOf(facts.definition->label());
    }
    const Types::LocalTag tag(facts.localTag);
    const auto* const label = tags.find(tag, true);
    return label == nullptr ? identityOf(tag) : identityOf(*label);
}

} // namespace Corvid::XMLBuilder
