#include "XMLBuilder/reader/FromXMLElementVisitor.h"

#include "XMLBuilder/Errors.h"
#include "XMLBuilder/reader/FromXMLMetadataSetVisitor.h"
#include "host/base/Exceptions.h"
#include "host/dictionary/MetaCollectionElement.h"
#include "host/dictionary/MetaMetadataSet.h"
#include "host/metadata/PartitionMetadata.h"
#include "host/types/Factories.h"
#include "host/types/UID.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace Corvid::XMLBuilder {

namespace {

namespace Identifiers = Types::Identifiers;
using ReferenceHolder = Templates::auto_ptr<Types::Reference>;

/// What is not a link is a set itself.
bool isLink(const DocumentNode& element) {
    return std::u16string_view(element.local).find(Names::linkSuffix) != std::u16string_view::npos;
}

ReferenceHolder makeReference(Identifiers::Identifier type, const Types::UUID& target) {
    switch (type) {
    case Identifiers::StrongReference:
        return ReferenceHolder(new Types::StrongReference(target));
    case Identifiers::WeakReference:
        return ReferenceHolder(new Types::WeakReference(target));
    default:
        return {};
    }
}

} // namespace

FromXMLElementVisitor::FromXMLElementVisitor(const DocumentNode& valueNode,
                                             const MetaMetadata::MetaElement* definition,
                                             Reading& reading, EmptyParts empty)
    : node_(valueNode),
      type_(definition == nullptr ? Identifiers::Unknown : definition->dataType()),
      itemType_(Identifiers::Unknown), reading_(reading), empty_(empty) {
    if (definition != nullptr && definition->isCollection()) {
        itemType_ =
            static_cast<const MetaMetadata::MetaCollectionElement*>(definition)->dataSubType();
    }
}

void FromXMLElementVisitor::visit(Metadata::SimpleElement& element) {
    if (auto value = parseValue(reading_, type_, node_, empty_)) {
        element.set(std::move(value), false);
    }
}

void FromXMLElementVisitor::visit(Metadata::BatchElement& element) {
    readItems<Types::Batch>(element);
}

void FromXMLElementVisitor::visit(Metadata::ArrayElement& element) {
    readItems<Types::Array>(element);
}

template <class Collection>
void FromXMLElementVisitor::readItems(Metadata::CollectionElement& element) {
    if (empty_ == EmptyParts::values && Identifiers::typeSize(itemType_) == 0) {
        readFilledUp<Collection>(element);
        return;
    }
    element.set(Templates::auto_ptr<Types::Collection>(new Collection(itemSize())));
    for (const auto* item = firstElement(node_); item != nullptr; item = nextElement(*item)) {
        element.add(parseValue(reading_, itemType_, *item, empty_));
    }
}

template <class Collection>
void FromXMLElementVisitor::readFilledUp(Metadata::CollectionElement& element) {
    std::vector<Templates::auto_ptr<Types::SimpleDataType>> items;
    std::size_t longest = 0;
    for (const auto* item = firstElement(node_); item != nullptr; item = nextElement(*item)) {
        items.push_back(parseValue(reading_, itemType_, *item, empty_));
        longest = std::max(longest, items.back()->byteCount());
    }
    // One long item makes all others long: there must not be more of that than a file can hold.
    if (longest * items.size() > Types::ByteRun::greatestSize) {
        throw Exceptions::LimitExceeded(
            std::to_string(items.size()) + " items, the longest of " + std::to_string(longest) +
                " bytes, have more than the " + std::to_string(Types::ByteRun::greatestSize) +
                " bytes that a property can hold",
            CORVID_ELEMENT_VISITOR_HERE);
    }
    element.set(Templates::auto_ptr<Types::Collection>(new Collection(static_cast<int>(longest))));
    if (longest == 0) {
        return; // A file can't hold items of no length.
    }
    Templates::vector<Types::u8> bytes;
    for (const auto& item : items) {
        bytes.assign(item->rawBuffer(), item->rawBuffer() + item->byteCount());
        bytes.resize(longest);
        element.add(Types::Factories::fromBytes(itemType_, {bytes.data(), bytes.size()}));
    }
}

int FromXMLElementVisitor::itemSize() {
    return CallerContract::hasVariableSize(itemType_) ? measureItems()
                                                      : Identifiers::typeSize(itemType_);
}

int FromXMLElementVisitor::measureItems() {
    int size = 0;
    for (const auto* item = firstElement(node_); item != nullptr; item = nextElement(*item)) {
        const auto value = parseValue(reading_, itemType_, *item);
        const int found = value ? value->serializedSize() : 0;
        if (size != 0 && found != size) {
            throwInvalidLength(CallerContract::Text::itemsHaveOneSize,
                               CallerContract::Text::itemsDiffer, CORVID_ELEMENT_VISITOR_HERE);
        }
        size = found;
    }
    return size;
}

void FromXMLElementVisitor::visit(Metadata::ReferenceElement& element) {
    const auto* child = firstElement(node_);
    if (child == nullptr) {
        return;
    }
    if (!isLink(*child)) {
        if (const auto* target = readInlineSet(*child)) {
            element.set(target);
        }
    } else if (auto reference = readLink(*child, type_)) {
        element.setUnverifiedReference(std::move(reference));
    } else {
        reading_.leaveOut(*child);
    }
}

void FromXMLElementVisitor::readReferences(Metadata::ReferenceCollectionElement& element) {
    const auto* item = firstElement(node_);
    if (item == nullptr) {
        // A collection is there from its first item on, and stays when that is gone.
        if (auto reference = makeReference(itemType_, Types::UUID())) {
            element.addUnverifiedReference(std::move(reference));
            element.remove(0);
        }
        return;
    }
    for (; item != nullptr; item = nextElement(*item)) {
        if (!isLink(*item)) {
            if (const auto* target = readInlineSet(*item)) {
                element.add(target);
            }
        } else if (auto reference = readLink(*item, itemType_)) {
            element.addUnverifiedReference(std::move(reference));
        } else {
            reading_.leaveOut(*item);
        }
    }
}

ReferenceHolder FromXMLElementVisitor::readLink(const DocumentNode& link,
                                                Identifiers::Identifier type) {
    const DocumentNode* const name = link.firstAttribute;
    if (name == nullptr) {
        return {};
    }
    return makeReference(type, reading_.names().findOrAdd(name->value, [] {
        return Types::Factories::UID::generateUUID(Types::Factories::UID::uniqueVersion);
    }));
}

Metadata::MetadataSet* FromXMLElementVisitor::readInlineSet(const DocumentNode& element) {
    const auto* definition = reading_.sets().find(element.local);
    if (definition == nullptr) {
        reading_.leaveOut(element);
        return nullptr;
    }
    auto& set = reading_.partition().createMetadataSet(definition->key());
    FromXMLMetadataSetVisitor reader(element, reading_);
    set.accept(reader);
    return &set;
}

} // namespace Corvid::XMLBuilder
