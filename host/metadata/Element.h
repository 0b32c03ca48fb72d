#pragma once

#include "host/base/Templates.h"
#include "host/dictionary/AbstractMetaAttribute.h"
#include "host/metadata/Visitors.h"
#include "host/types/DataType.h"

namespace Corvid::MetaMetadata {
class MetaElement;
}

namespace Corvid::Metadata {

/// One property of a set: what the dictionary says of it, and its value, or none.
class CORVID_EXPORT Element {
public:
    using Attribute = Templates::SharedPtr<const MetaMetadata::AbstractMetaAttribute>;

    Element(const Element&) = delete;
    Element& operator=(const Element&) = delete;
    virtual ~Element();

    /// What the element is by the dictionary: a property of this set's class, of another class, or
    /// unknown. Never null.
    virtual const Attribute& metaAttribute() const noexcept;
    /// The definition of the property; null for an unknown one.
    const MetaMetadata::MetaElement* definition() const noexcept {
        return attribute_->facts().definition;
    }

    /// True when the element has no value and so is not to be written.
    virtual bool isSkipped() const noexcept = 0;

    virtual void accept(Visitors::ElementVisitor& visitor) const = 0;
    virtual void accept(Visitors::NonConstElementVisitor& visitor) = 0;

    /// Takes the value from its bytes in a KLV value.
    /// @return false where the bytes do not fit the type; the element is as it was.
    virtual bool parse(Types::ByteView bytes) = 0;

    /// The bytes of the value in a KLV value. Not to be asked of an element without value.
    virtual std::size_t serializedSize() const = 0;
    virtual void serialize(DataIO::DataSink& sink) const = 0;

    /// The local tag that the element had in the file it was read from; 0 for one made since.
    Types::u16 localTag() const noexcept { return localTag_; }
    /// The element's place among the properties of its set, counted from 0.
    Types::u32 position() const noexcept { return position_; }

    static void* operator new(std::size_t size) { return Platform::malloc_alloc::allocate(size); }
    static void operator delete(void* memory, std::size_t size) noexcept {
        Platform::malloc_alloc::deallocate(memory, size);
    }

protected:
    /// @throws InvalidArgument  there is no attribute.
    explicit Element(Attribute attribute);

private:
    friend class MetadataSet;

    Attribute attribute_;
    Types::u16 localTag_ = 0;
    Types::u32 position_ = 0;
};

/// Makes an element without value of the kind that the attribute's definition asks for; an unknown
/// attribute gets a simple element.
/// @throws InvalidArgument  there is no attribute.
CORVID_EXPORT Templates::auto_ptr<Element> createElement(Element::Attribute attribute);

} // namespace Corvid::Metadata
