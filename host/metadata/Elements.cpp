#include "host/metadata/Elements.h"

#include "host/base/Exceptions.h"
#include "host/dictionary/MetaCollectionElement.h"
#include "host/metadata/MetadataSet.h"
#include "host/types/Factories.h"

namespace Corvid::Metadata {

namespace {

namespace Identifiers = Types::Identifiers;
using Types::ByteView;
using Types::Reference;

template <class T>
Templates::auto_ptr<Reference> makeReference(Identifiers::Identifier type, T&& from) {
    return type == Identifiers::StrongReference
               ? Templates::auto_ptr<Reference>(new Types::StrongReference(std::forward<T>(from)))
               : Templates::auto_ptr<Reference>(new Types::WeakReference(std::forward<T>(from)));
}

Identifiers::Identifier itemType(const MetaMetadata::MetaElement& definition) {
    return static_cast<const MetaMetadata::MetaCollectionElement&>(definition).dataSubType();
}

/// The InstanceUID of a set that a property is to refer to.
Types::UUID instanceOf(const MetadataSet* target, const MetaMetadata::MetaElement& property) {
    if (target == nullptr) {
        throw Exceptions::InvalidArgument("property " +
                                              Platform::toUtf8(property.label().toString()) +
                                              ": no set to refer to, expected one",
                                          CORVID_HERE);
    }
    return target->instanceUID();
}

} // namespace

void SimpleElement::set(Templates::auto_ptr<Types::SimpleDataType> value, bool keepPresent) {
    if (keepPresent && value_) {
        return;
    }
    value_ = std::move(value);
    changed();
}

bool SimpleElement::parse(ByteView bytes) {
    const auto type = definition() == nullptr ? Identifiers::Unknown : definition()->dataType();
    auto value = Types::Factories::fromBytes(type, bytes);
    if (!value) {
        return false;
    }
    set(std::move(value));
    return true;
}

std::size_t SimpleElement::serializedSize() const { return value_->byteCount(); }
void SimpleElement::serialize(DataIO::DataSink& sink) const { value_->serialize(sink); }

void ReferenceElement::set(const MetadataSet* target) {
    value_ = makeReference(definition()->dataType(), instanceOf(target, *definition()));
}

void ReferenceElement::setUnverifiedReference(Templates::auto_ptr<Reference> reference) {
    value_ = std::move(reference);
}

bool ReferenceElement::parse(ByteView bytes) {
    if (!Reference::fits(bytes)) {
        return false;
    }
    value_ = makeReference(definition()->dataType(), bytes);
    return true;
}

std::size_t ReferenceElement::serializedSize() const { return value_->byteCount(); }
void ReferenceElement::serialize(DataIO::DataSink& sink) const { value_->serialize(sink); }

Types::u32 ReferenceCollectionElement::size() const noexcept {
    return static_cast<Types::u32>(references_.size());
}

const Reference& ReferenceCollectionElement::at(Types::u32 index) const noexcept {
    return *references_[index];
}

void ReferenceCollectionElement::add(const MetadataSet* target) {
    addUnverifiedReference(
        makeReference(itemType(*definition()), instanceOf(target, *definition())));
}

void ReferenceCollectionElement::addUnverifiedReference(Templates::auto_ptr<Reference> reference) {
    if (reference) {
        references_.push_back(std::move(reference));
        present_ = true;
    }
}

void ReferenceCollectionElement::replace(Types::u32 index,
                                         Templates::auto_ptr<Reference> reference) {
    if (reference) {
        references_[index] = std::move(reference);
    }
}

void ReferenceCollectionElement::remove(Types::u32 index) {
    references_.erase(references_.begin() + index);
}

bool ReferenceCollectionElement::parse(ByteView bytes) {
    Types::Factories::CollectionBytes head;
    if (!Types::Factories::readCollectionHead(bytes, head) ||
        (head.count != 0 && head.itemSize != Reference::fixedSize)) {
        return false;
    }
    const auto type = itemType(*definition());
    references_.clear();
    references_.reserve(head.count);
    for (Types::u32 i = 0; i != head.count; ++i) {
        references_.push_back(makeReference(type, head.item(i)));
    }
    present_ = true;
    emptyItemSize_ = head.count == 0 ? head.itemSize : Types::u32{Reference::fixedSize};
    return true;
}

std::size_t ReferenceCollectionElement::serializedSize() const {
    return 8 + references_.size() * Reference::fixedSize;
}

void ReferenceCollectionElement::serialize(DataIO::DataSink& sink) const {
    Types::u8 head[8];
    Types::writeBigEndian(head, size());
    Types::writeBigEndian(head + 4,
                          references_.empty() ? emptyItemSize_ : Types::u32{Reference::fixedSize});
    sink.write(head, sizeof head);
    for (const auto& reference : references_) {
        reference->serialize(sink);
    }
}

void CollectionElement::set(Templates::auto_ptr<Types::Collection> value) {
    value_ = std::move(value);
}

void CollectionElement::add(Templates::auto_ptr<Types::SimpleDataType> item) {
    if (!value_) {
        throw Exceptions::InvalidArgument("property " +
                                              Platform::toUtf8(definition()->label().toString()) +
                                              ": no collection to add an item to, expected one",
                                          CORVID_HERE);
    }
    value_->add(std::move(item));
}

bool CollectionElement::parse(ByteView bytes) {
    auto value = Types::Factories::collectionFromBytes(definition()->dataType(),
                                                       itemType(*definition()), bytes);
    if (!value) {
        return false;
    }
    value_ = std::move(value);
    return true;
}

std::size_t CollectionElement::serializedSize() const {
    // Readers of the bytes know the items by their size alone.
    for (Types::u32 i = 0; i != value_->size(); ++i) {
        if (const auto found = value_->at(i).byteCount();
            found != static_cast<std::size_t>(value_->itemSize())) {
            throw Exceptions::InvalidLength(
                "property " + Platform::toUtf8(definition()->label().toString()) + ": item " +
                    std::to_string(i) + " of the collection has " + std::to_string(found) +
                    " bytes, expected " + std::to_string(value_->itemSize()) +
                    " as its others have",
                CORVID_HERE);
        }
    }
    return value_->byteCount();
}
void CollectionElement::serialize(DataIO::DataSink& sink) const { value_->serialize(sink); }

#define CORVID_ACCEPT(Class)                                                                       \
    void Class::accept(Visitors::ElementVisitor& visitor) const { visitor.visit(*this); }          \
    void Class::accept(Visitors::NonConstElementVisitor& visitor) { visitor.visit(*this); }
CORVID_ACCEPT(SimpleElement)
CORVID_ACCEPT(ReferenceElement)
CORVID_ACCEPT(ReferenceBatchElement)
CORVID_ACCEPT(ReferenceArrayElement)
CORVID_ACCEPT(BatchElement)
CORVID_ACCEPT(ArrayElement)
#undef CORVID_ACCEPT

} // namespace Corvid::Metadata
