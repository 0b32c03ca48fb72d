#pragma once

#include "host/klv/Key.h"
#include "host/metadata/Elements.h"
#include "host/types/IdentifierTypes.h"

#include <utility>

namespace Corvid::MetaMetadata {
class MetaMetadataSet;
}

namespace Corvid::Metadata {

class PartitionDictionary;
class PartitionMetadata;

namespace Structural {

/// Labels of properties that the model itself needs.
struct CORVID_EXPORT StructuralMetadataULs {
    static const Types::UniversalLabel& instanceUID();
    static const Types::UniversalLabel& generationUID();
};

/// Whether it is the label of InstanceUID, whatever its version byte.
CORVID_EXPORT bool isInstanceUID(const Types::UniversalLabel& label) noexcept;

/// Whether it is the label of a property that identifies sets or their generation and says nothing
/// of the clip: InstanceUID or GenerationUID.
CORVID_EXPORT bool identifies(const Types::UniversalLabel& label) noexcept;

/// Keys of sets that the model itself needs.
struct CORVID_EXPORT StructuralMetadataKeys {
    static const KLV::Key& preface();
};

} // namespace Structural

/// One set: a key and its elements. Owned by its partition.
class CORVID_EXPORT MetadataSet {
public:
    using Entry = std::pair<Types::UniversalLabel, Element*>;
    using Elements = Templates::vector<Entry>;
    using iterator = Elements::iterator;
    using const_iterator = Elements::const_iterator;
    using invalid_iterator = Templates::vector<Element*>::const_iterator;

    /// @param definition  the class of the set, or null; must outlive the set.
    MetadataSet(PartitionMetadata& partition, const KLV::Key& key,
                const MetaMetadata::MetaMetadataSet* definition);
    MetadataSet(const MetadataSet&) = delete;
    MetadataSet& operator=(const MetadataSet&) = delete;
    virtual ~MetadataSet();

    /// The set's class in the dictionary, or null.
    virtual const MetaMetadata::MetaMetadataSet* metaMetadataSet() const noexcept;
    virtual const KLV::Key& key() const noexcept;
    /// Gives the set another key of the same class: the version or the coding of the properties'
    /// lengths may differ (KLV::matches).
    /// @throws InvalidArgument  the key is that of another class.
    void setKey(const KLV::Key& key);
    virtual void accept(Visitors::MetadataSetVisitor& visitor) const;
    virtual void accept(Visitors::NonConstMetadataSetVisitor& visitor);

    /// The elements that the set's class lists, by label, in label order.
    iterator begin() { return all().begin(); }
    iterator end() { return all().end(); }
    const_iterator begin() const { return all().begin(); }
    const_iterator end() const { return all().end(); }

    /// Those of them that have been asked for or filled, likewise; the others have no value. For
    /// readers of values only: a set has some six out of the forty that its class may list.
    const Elements& made() const noexcept { return elements_; }

    /// The elements that do not belong to the set's class, in stored order.
    invalid_iterator invalidBegin() const noexcept { return invalid_.begin(); }
    invalid_iterator invalidEnd() const noexcept { return invalid_.end(); }

    /// The element of a label (its version byte takes no part), or null.
    Element* find(const Types::UniversalLabel& label) const;

    /// Gives the set every element that its class and the ancestors of the class list, without
    /// values. Each is made when it is asked for.
    void holdWholeClass() noexcept { isWhole_ = false; }

    /// Makes room for so many elements that the set's class lists.
    void reserve(std::size_t elements) { elements_.reserve(elements); }

    /// Adds an element without value that the set's class lists.
    /// @param localTag  the tag that it had in its file, or 0.
    Element& createElement(const Types::UniversalLabel& label, Element::Attribute attribute,
                           Types::u16 localTag = 0);
    /// Adds an element without value after the invalid ones.
    Element& createInvalidElement(Element::Attribute attribute, Types::u16 localTag = 0);

    /// Gives some of the set's elements each other's places in the stored order.
    /// @param order  the elements, each once, as they are to follow one another. Borrowed.
    void arrange(const Templates::vector<Element*>& order);

    /// The octets of the length field that the set had in its file or is to have, 1 to 9.
    unsigned char berLength() const noexcept { return berLength_; }
    void setBerLength(unsigned char octets) noexcept { berLength_ = octets; }

    /// The octets of the length field that each property has or is to have, 1 to 9; a value that
    /// needs more gets more. Used only where the key says that properties have BER lengths
    /// (KLV::hasBerLengths).
    unsigned char propertyBerLength() const noexcept { return propertyBerLength_; }
    void setPropertyBerLength(unsigned char octets) noexcept { propertyBerLength_ = octets; }

    /// The set's InstanceUID; zeros where it has none.
    Types::UUID instanceUID() const;
    bool hasInstanceUID() const noexcept;

    /// Sees to it that the primer has an entry for the tag of every property with a value, as far
    /// as its label is known.
    /// @throws LimitExceeded  all dynamic tags are in use.
    void assignTags(PartitionDictionary& primer) const;

    /// The bytes of the whole set in a file: key, length, and the properties that have a value in
    /// their stored order. Properties without a tag get theirs as by assignTags().
    /// @throws LimitExceeded  a value has more than 65535 bytes; nothing has been written.
    /// @throws InvalidLength  the items of a collection differ in size; nothing has been written.
    std::size_t serializedSize() const;
    void serialize(DataIO::DataSink& sink, PartitionDictionary& primer) const;

    /// The whole number of properties that have a value.
    std::size_t countValues() const noexcept;

    static void* operator new(std::size_t size) { return Platform::malloc_alloc::allocate(size); }
    static void operator delete(void* memory, std::size_t size) noexcept {
        Platform::malloc_alloc::deallocate(memory, size);
    }

private:
    Elements& all() const;
    /// The place of an element that is added.
    std::size_t nextPosition() const;
    Element& make(const Types::UniversalLabel& label, Element::Attribute attribute,
                  std::size_t position) const;

    struct Stored;

    /// Every element with a value and its label (null for an invalid one), in stored order.
    Stored inStoredOrder() const;
    std::size_t valueSize(const Stored& stored) const;
    /// The octets of the length field of a property whose value has so many bytes.
    std::size_t lengthOctets(std::size_t valueSize) const noexcept;

    friend class PartitionMetadata;

    PartitionMetadata& partition_;
    std::size_t place_ = 0; ///< among the sets of the partition, which sees to it
    const MetaMetadata::MetaMetadataSet* definition_;
    // An element without value that is made late is no change that anybody could see.
    mutable SimpleElement* instanceUID_ = nullptr;
    mutable Elements elements_;
    mutable bool isWhole_ = true; ///< no element of the class is still to be made
    Templates::vector<Element*> invalid_;
    KLV::Key key_;
    unsigned char berLength_ = 4;
    unsigned char propertyBerLength_ = 1;
};

} // namespace Corvid::Metadata
