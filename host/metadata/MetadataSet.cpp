#include "host/metadata/MetadataSet.h"

#include "host/base/Exceptions.h"
#include "host/dictionary/MetaElement.h"
#include "host/dictionary/MetaMetadataSet.h"
#include "host/klv/BerOutput.h"
#include "host/metadata/PartitionDictionary.h"
#include "host/metadata/PartitionMetadata.h"
#include "host/types/ByteRuns.h"

#include <algorithm>
#include <boost/container/small_vector.hpp>

namespace Corvid::Metadata {

namespace {

/// The element by which references find the set: a change of its value is a change of the
/// partition.
class InstanceUIDElement : public SimpleElement {
public:
    InstanceUIDElement(Attribute attribute, PartitionMetadata& partition)
        : SimpleElement(std::move(attribute)), partition_(partition) {}

protected:
    void changed() noexcept override { partition_.forgetReferences(); }

private:
    PartitionMetadata& partition_;
};

constexpr std::size_t tagSize = sizeof(Types::u16);

[[noreturn]] void refuse(const MetadataSet& set, const Types::UniversalLabel* label,
                         const Element& element, std::size_t size) {
    if (const auto* definition = element.definition(); label == nullptr && definition) {
        label = &definition->label();
    }
    const auto encoding = Types::dottedHexadecimal;
    throw Exceptions::LimitExceeded(
        "set " + Platform::toUtf8(set.instanceUID().toString(encoding)) + " with the key " +
            Platform::toUtf8(set.key().toString(encoding)) + ": property " +
            (label == nullptr ? "without label" : Platform::toUtf8(label->toString(encoding))) +
            " has " + std::to_string(size) + " bytes, but at most " +
            std::to_string(Types::ByteRun::greatestSize) + " fit a local set",
        CORVID_HERE);
}

/// The tag that a property has in a file.
/// @param label  null for an element that does not belong to its set's class.
Types::LocalTag tagOf(const Types::UniversalLabel* label, const Element& element,
                      PartitionDictionary& primer) {
    if (element.localTag() != 0) {
        return Types::LocalTag(element.localTag());
    }
    if (label == nullptr) {
        return primer.tagOf(*element.metaAttribute());
    }
    const auto* const definition = element.metaAttribute()->facts().definition;
    return definition == nullptr
               ? primer.findOrGenerate(*label)
               : primer.findOrGenerate(*label, Types::LocalTag(definition->staticLocalTag()));
}

} // namespace

namespace Structural {

const Types::UniversalLabel& StructuralMetadataULs::instanceUID() {
    static const Types::UniversalLabel label(std::array<Types::u8, 16>{
        0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x01, 0x01, 0x01, 0x15, 0x02, 0, 0, 0, 0});
    return label;
}

const Types::UniversalLabel& StructuralMetadataULs::generationUID() {
    static const Types::UniversalLabel label(std::array<Types::u8, 16>{
        0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x02, 0x05, 0x20, 0x07, 0x01, 0x08, 0, 0, 0});
    return label;
}

bool isInstanceUID(const Types::UniversalLabel& label) noexcept {
    return label.withoutVersion() == StructuralMetadataULs::instanceUID().withoutVersion();
}

bool identifies(const Types::UniversalLabel& label) noexcept {
    return isInstanceUID(label) ||
           label.withoutVersion() == StructuralMetadataULs::generationUID().withoutVersion();
}

const KLV::Key& StructuralMetadataKeys::preface() {
    static const KLV::Key key(std::array<unsigned char, 16>{0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53,
                                                            0x01, 0x01, 0x0d, 0x01, 0x01, 0x01,
                                                            0x01, 0x01, 0x2f, 0});
    return key;
}

} // namespace Structural

/// As many as nearly every set has need no memory of their own.
struct MetadataSet::Stored
    : boost::container::small_vector<std::pair<const Types::UniversalLabel*, const Element*>, 16> {
};

MetadataSet::MetadataSet(PartitionMetadata& partition, const KLV::Key& key,
                         const MetaMetadata::MetaMetadataSet* definition)
    : partition_(partition), definition_(definition), key_(key) {}

MetadataSet::~MetadataSet() {
    for (const Entry& entry : elements_) {
        delete entry.second;
    }
    for (const Element* element : invalid_) {
        delete element;
    }
}

const MetaMetadata::MetaMetadataSet* MetadataSet::metaMetadataSet() const noexcept {
    return definition_;
}
const KLV::Key& MetadataSet::key() const noexcept { return key_; }

void MetadataSet::setKey(const KLV::Key& key) {
    if (!KLV::matches(key, key_)) {
        throw Exceptions::InvalidArgument(
            "set with the key " + Platform::toUtf8(key_.toString()) + " can't have the key " +
                Platform::toUtf8(key.toString()) + ", expected one of the same class",
            CORVID_HERE);
    }
    key_ = key;
}

void MetadataSet::accept(Visitors::MetadataSetVisitor& visitor) const { visitor.visit(*this); }
void MetadataSet::accept(Visitors::NonConstMetadataSetVisitor& visitor) { visitor.visit(*this); }

Element* MetadataSet::find(const Types::UniversalLabel& label) const {
    const auto wanted = label.withoutVersion();
    for (const Entry& entry : elements_) {
        if (entry.first.withoutVersion() == wanted) {
            return entry.second;
        }
    }
    const auto* attribute = isWhole_ ? nullptr : definition_->find(label);
    if (attribute == nullptr) {
        return nullptr;
    }
    // In the order of the class, whichever is asked for first.
    const auto position = attribute - definition_->attributes().data();
    return &make((*attribute)->facts().definition->label(), *attribute,
                 static_cast<std::size_t>(position));
}

MetadataSet::Elements& MetadataSet::all() const {
    if (!isWhole_) {
        for (const Element::Attribute& attribute : definition_->attributes()) {
            find(attribute->facts().definition->label());
        }
        isWhole_ = true;
    }
    return elements_;
}

std::size_t MetadataSet::nextPosition() const {
    return (isWhole_ ? elements_.size() : definition_->attributes().size()) + invalid_.size();
}

Element& MetadataSet::make(const Types::UniversalLabel& label, Element::Attribute attribute,
                           std::size_t position) const {
    const bool identifies = Structural::isInstanceUID(label);
    auto element =
        identifies
            ? Templates::auto_ptr<Element>(new InstanceUIDElement(std::move(attribute), partition_))
            : Metadata::createElement(std::move(attribute));
    element->position_ = static_cast<Types::u32>(position);
    const auto place = std::upper_bound(
        elements_.begin(), elements_.end(), label,
        [](const Types::UniversalLabel& a, const Entry& b) { return a < b.first; });
    const auto entry = elements_.insert(place, Entry(label, element.get()));
    if (identifies) {
        instanceUID_ = static_cast<SimpleElement*>(element.get());
    }
    element.release();
    return *entry->second;
}

Element& MetadataSet::createElement(const Types::UniversalLabel& label,
                                    Element::Attribute attribute, Types::u16 localTag) {
    Element& element = make(label, std::move(attribute), nextPosition());
    element.localTag_ = localTag;
    return element;
}

Element& MetadataSet::createInvalidElement(Element::Attribute attribute, Types::u16 localTag) {
    auto element = Metadata::createElement(std::move(attribute));
    partition_.keepTagOf(*element->metaAttribute());
    element->localTag_ = localTag;
    element->position_ = static_cast<Types::u32>(nextPosition());
    invalid_.push_back(element.get());
    return *element.release();
}

void MetadataSet::arrange(const Templates::vector<Element*>& order) {
    Templates::vector<Types::u32> places;
    places.reserve(order.size());
    for (const Element* element : order) {
        places.push_back(element->position_);
    }
    std::sort(places.begin(), places.end());
    for (std::size_t i = 0; i != order.size(); ++i) {
        order[i]->position_ = places[i];
    }
    std::sort(invalid_.begin(), invalid_.end(),
              [](const Element* a, const Element* b) { return a->position_ < b->position_; });
}

bool MetadataSet::hasInstanceUID() const noexcept {
    // A dictionary may give the property another type, a program any value.
    return instanceUID_ != nullptr && instanceUID_->value() != nullptr &&
           instanceUID_->value()->byteCount() == Types::UUID::fixedSize;
}

Types::UUID MetadataSet::instanceUID() const {
    if (!hasInstanceUID()) {
        return {};
    }
    const Types::SimpleDataType& value = *instanceUID_->value();
    return Types::UUID(Types::ByteView{value.rawBuffer(), value.serializedSize()});
}

MetadataSet::Stored MetadataSet::inStoredOrder() const {
    Stored order;
    order.reserve(elements_.size() + invalid_.size());
    for (const Entry& entry : elements_) {
        if (!entry.second->isSkipped()) {
            order.emplace_back(&entry.first, entry.second);
        }
    }
    for (const Element* element : invalid_) {
        if (!element->isSkipped()) {
            order.emplace_back(nullptr, element);
        }
    }
    std::sort(order.begin(), order.end(), [](const auto& a, const auto& b) {
        return a.second->position() < b.second->position();
    });
    return order;
}

std::size_t MetadataSet::countValues() const noexcept {
    const auto has = [](const Element* element) { return !element->isSkipped(); };
    return static_cast<std::size_t>(std::count_if(elements_.begin(), elements_.end(),
                                                  [&](const Entry& e) { return has(e.second); }) +
                                    std::count_if(invalid_.begin(), invalid_.end(), has));
}

void MetadataSet::assignTags(PartitionDictionary& primer) const {
    for (const auto& [label, element] : inStoredOrder()) {
        primer.addStatic(tagOf(label, *element, primer));
    }
}

std::size_t MetadataSet::valueSize(const Stored& stored) const {
    std::size_t size = 0;
    for (const auto& [label, element] : stored) {
        const std::size_t bytes = element->serializedSize();
        if (bytes > Types::ByteRun::greatestSize) {
            refuse(*this, label, *element, bytes);
        }
        size += tagSize + lengthOctets(bytes) + bytes;
    }
    return size;
}

std::size_t MetadataSet::lengthOctets(std::size_t valueSize) const noexcept {
    return KLV::hasBerLengths(key_) ? KLV::berOctets(valueSize, propertyBerLength_)
                                    : sizeof(Types::u16);
}

std::size_t MetadataSet::serializedSize() const {
    const std::size_t size = valueSize(inStoredOrder());
    return KLV::Key::length + KLV::berOctets(size, berLength_) + size;
}

void MetadataSet::serialize(DataIO::DataSink& sink, PartitionDictionary& primer) const {
    const Stored stored = inStoredOrder();
    const std::size_t size = valueSize(stored); // refuses before anything is written
    key_.serialize(sink);
    KLV::writeBer(sink, size, berLength_);
    const bool hasBerLengths = KLV::hasBerLengths(key_);
    for (const auto& [label, element] : stored) {
        Types::u8 head[tagSize + sizeof(Types::u16)];
        const std::size_t bytes = element->serializedSize();
        Types::writeBigEndian(head, tagOf(label, *element, primer).value());
        if (hasBerLengths) {
            sink.write(head, tagSize);
            KLV::writeBer(sink, bytes, propertyBerLength_);
        } else {
            Types::writeBigEndian(head + tagSize, static_cast<Types::u16>(bytes));
            sink.write(head, sizeof head);
        }
        element->serialize(sink);
    }
}

} // namespace Corvid::Metadata
