#pragma once

#include "Corvid/Export.h"
#include "host/dictionary/AttributeFacts.h"

namespace Corvid::MetaMetadata {

class AbstractMetaAttributeVisitor;

/// What an element of a set is according to the dictionary: a property of this set, a property of
/// other sets only, or unknown.
class CORVID_EXPORT AbstractMetaAttribute {
public:
    AbstractMetaAttribute(const AbstractMetaAttribute&) = delete;
    AbstractMetaAttribute& operator=(const AbstractMetaAttribute&) = delete;
    virtual ~AbstractMetaAttribute();

    /// Calls the visit() of the concrete class.
    virtual void accept(AbstractMetaAttributeVisitor& visitor) const = 0;

    /// The same without a visitor.
    const AttributeFacts& facts() const noexcept { return facts_; }

protected:
    explicit AbstractMetaAttribute(const AttributeFacts& facts) noexcept : facts_(facts) {}

private:
    AttributeFacts facts_;
};

} // namespace Corvid::MetaMetadata
