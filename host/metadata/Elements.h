#pragma once

#include "host/metadata/Element.h"
#include "host/types/Collections.h"
#include "host/types/References.h"

namespace Corvid::Metadata {

/// An element with one value that is neither a reference nor a collection.
class CORVID_EXPORT SimpleElement : public Element {
public:
    explicit SimpleElement(Attribute attribute) : Element(std::move(attribute)) {}

    /// The value, or null. Lives until the element gets another.
    const Types::SimpleDataType* value() const noexcept { return value_.get(); }
    /// Stores a value; null takes it away.
    /// @param keepPresent  when true, a value that is there already is kept.
    void set(Templates::auto_ptr<Types::SimpleDataType> value, bool keepPresent = false);

    bool isSkipped() const noexcept override { return !value_; }
    void accept(Visitors::ElementVisitor& visitor) const override;
    void accept(Visitors::NonConstElementVisitor& visitor) override;
    bool parse(Types::ByteView bytes) override;
    std::size_t serializedSize() const override;
    void serialize(DataIO::DataSink& sink) const override;

protected:
    /// Called after the value has changed.
    virtual void changed() noexcept {}

private:
    Templates::auto_ptr<Types::SimpleDataType> value_;
};

/// An element with one reference.
class CORVID_EXPORT ReferenceElement : public Element {
public:
    explicit ReferenceElement(Attribute attribute) : Element(std::move(attribute)) {}

    /// The reference, or null. Lives until the element gets another.
    const Types::Reference* value() const noexcept { return value_.get(); }
    /// Refers to a set by the InstanceUID that it has.
    /// @throws InvalidArgument  there is no set; the element is as it was.
    void set(const MetadataSet* target);
    /// Stores a reference whose target need not be there.
    void setUnverifiedReference(Templates::auto_ptr<Types::Reference> reference);

    bool isSkipped() const noexcept override { return !value_; }
    void accept(Visitors::ElementVisitor& visitor) const override;
    void accept(Visitors::NonConstElementVisitor& visitor) override;
    bool parse(Types::ByteView bytes) override;
    std::size_t serializedSize() const override;
    void serialize(DataIO::DataSink& sink) const override;

private:
    Templates::auto_ptr<Types::Reference> value_;
};

/// An element with any number of references of one kind.
class CORVID_EXPORT ReferenceCollectionElement : public Element {
public:
    /// The number of references.
    virtual Types::u32 size() const noexcept;
    /// @param index  below size().
    virtual const Types::Reference& at(Types::u32 index) const noexcept;

    /// Appends a reference to a set by the InstanceUID that it has.
    /// @throws InvalidArgument  there is no set; the element is as it was.
    void add(const MetadataSet* target);
    /// Appends a reference whose target need not be there. A null pointer appends nothing.
    void addUnverifiedReference(Templates::auto_ptr<Types::Reference> reference);
    /// Puts another reference into the place of one. A null pointer changes nothing.
    /// @param index  below size().
    void replace(Types::u32 index, Templates::auto_ptr<Types::Reference> reference);
    void remove(Types::u32 index);

    /// True when there is no collection; an empty one is there all the same.
    bool isSkipped() const noexcept override { return !present_; }
    bool parse(Types::ByteView bytes) override;
    std::size_t serializedSize() const override;
    void serialize(DataIO::DataSink& sink) const override;

protected:
    using Element::Element;

private:
    Templates::vector<Templates::auto_ptr<Types::Reference>> references_;
    Types::u32 emptyItemSize_ =
        Types::Reference::fixedSize; ///< some writers say 0 where there is none
    bool present_ = false;
};

/// References whose order means nothing.
class CORVID_EXPORT ReferenceBatchElement : public ReferenceCollectionElement {
public:
    explicit ReferenceBatchElement(Attribute attribute)
        : ReferenceCollectionElement(std::move(attribute)) {}
    void accept(Visitors::ElementVisitor& visitor) const override;
    void accept(Visitors::NonConstElementVisitor& visitor) override;
};

/// References whose order means something.
class CORVID_EXPORT ReferenceArrayElement : public ReferenceCollectionElement {
public:
    explicit ReferenceArrayElement(Attribute attribute)
        : ReferenceCollectionElement(std::move(attribute)) {}
    void accept(Visitors::ElementVisitor& visitor) const override;
    void accept(Visitors::NonConstElementVisitor& visitor) override;
};

/// An element with a collection of values.
class CORVID_EXPORT CollectionElement : public Element {
public:
    /// The collection, or null. Lives until the element gets another.
    const Types::Collection* value() const noexcept { return value_.get(); }
    void set(Templates::auto_ptr<Types::Collection> value);
    /// Appends an item to the collection. A null pointer appends nothing.
    /// @throws InvalidArgument  there is no collection.
    void add(Templates::auto_ptr<Types::SimpleDataType> item);

    /// True when there is no collection; an empty one is there all the same.
    bool isSkipped() const noexcept override { return !value_; }
    bool parse(Types::ByteView bytes) override;
    /// @throws InvalidLength  an item's size is not the one that the collection says its items
    /// have.
    std::size_t serializedSize() const override;
    void serialize(DataIO::DataSink& sink) const override;

protected:
    using Element::Element;

private:
    Templates::auto_ptr<Types::Collection> value_;
};

/// Values whose order means nothing.
class CORVID_EXPORT BatchElement : public CollectionElement {
public:
    explicit BatchElement(Attribute attribute) : CollectionElement(std::move(attribute)) {}
    void accept(Visitors::ElementVisitor& visitor) const override;
    void accept(Visitors::NonConstElementVisitor& visitor) override;
};

/// Values whose order means something.
class CORVID_EXPORT ArrayElement : public CollectionElement {
public:
    explicit ArrayElement(Attribute attribute) : CollectionElement(std::move(attribute)) {}
    void accept(Visitors::ElementVisitor& visitor) const override;
    void accept(Visitors::NonConstElementVisitor& visitor) override;
};

} // namespace Corvid::Metadata
