#include "XMLBuilder/reader/Supplement.h"

#include "host/dictionary/AbstractMetaAttributeVisitor.h"
#include "host/dictionary/MetaAttribute.h"
#include "host/dictionary/MetaElement.h"
#include "host/dictionary/MisplacedAttribute.h"
#include "host/dictionary/UnknownAttribute.h"

#include <algorithm>

namespace Corvid::XMLBuilder {

namespace {

template <class Bytes> PropertyIdentity identity(Types::u8 kind, const Bytes& bytes) {
    PropertyIdentity result{kind};
    std::copy(bytes.begin(), bytes.end(), result.begin() + 1);
    return result;
}

class Identifier : public MetaMetadata::AbstractMetaAttributeVisitor {
public:
    explicit Identifier(const Metadata::PartitionDictionary& tags) : tags_(tags) {}

    void visit(const MetaMetadata::UnknownAttribute& attribute) override {
        const Types::LocalTag& tag = attribute.localTag();
        const auto* const label = tags_.find(tag, true);
        identity = label == nullptr ? identityOf(tag) : identityOf(*label);
    }
    void visit(const MetaMetadata::MisplacedAttribute& attribute) override {
        identity = identityOf(attribute.metaElement().label());
    }
    void visit(const MetaMetadata::MetaAttribute& attribute) override {
        identity = identityOf(attribute.metaElement().label());
    }

    PropertyIdentity identity{};

private:
    const Metadata::PartitionDictionary& tags_;
};

} // namespace

PropertyIdentity identityOf(const Types::UniversalLabel& label) {
    return identity('l', label.withoutVersion());
}

PropertyIdentity identityOf(const Types::LocalTag& tag) { return identity('t', tag.bytes()); }

PropertyIdentity identityOf(const MetaMetadata::AbstractMetaAttribute& attribute,
                            const Metadata::PartitionDictionary& tags) {
    Identifier identifier(tags);
    attribute.accept(identifier);
    return identifier.identity;
}

} // namespace Corvid::XMLBuilder
