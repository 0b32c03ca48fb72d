#include "XMLBuilder/reader/FromXMLElementVisitor.h"

#include "XMLBuilder/Errors.h"
#include "XMLBuilder/reader/FromXMLMetadataSetVisitor.h"
#include "XMLBuilder/reader/nodes/NodeText.h"
#include "XMLBuilder/reader/strict/ValueRules.h"
#include "host/base/Exceptions.h"
#include "host/dictionary/MetaCollectionElement.h"
#include "host/dictionary/MetaMetadataSet.h"
#include "host/metadata/PartitionMetadata.h"
#include "host/types/Factories.h"
#include "host/types/UID.h"

#include <algorithm>
#include <limits>
#include <string>
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

/// What an empty element of a type is: strictly, what somebody has left empty on purpose is text or
/// bytes of no length.
EmptyParts FromXMLElementVisitor::emptyOf(Identifiers::Identifier type) const {
    return reading_.strictness() != nullptr && Identifiers::typeSize(type) == 0 ? EmptyParts::values
                                                                                : empty_;
}

void FromXMLElementVisitor::visit(Metadata::SimpleElement& element) {
    if (reading_.strictness() != nullptr &&
        !hasRightForm(type_, node_, empty_, reading_.strictness()->mistakes())) {
        return;
    }
    if (auto value = parseValue(reading_, type_, node_, emptyOf(type_))) {
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
    if (reading_.strictness() != nullptr && !checkItems()) {
        return;
    }
    if (empty_ == EmptyParts::values && Identifiers::typeSize(itemType_) == 0) {
        readFilledUp<Collection>(element);
        return;
    }
    element.set(Templates::auto_ptr<Types::Collection>(new Collection(itemSize())));
    for (const auto* item = firstElement(node_); item != nullptr; item = nextElement(*item)) {
        element.add(parseValue(reading_, itemType_, *item, emptyOf(itemType_)));
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

/// Whether there are only items, each with a value.
bool FromXMLElementVisitor::checkItems() {
    Mistakes& mistakes = reading_.strictness()->mistakes();
    refuseText(node_, mistakes);
    bool isRight = true;
    for (const auto* item = firstElement(node_); item != nullptr; item = nextElement(*item)) {
        if (item->local != std::u16string_view(u"Element") ||
            !isSameNamespace(item->uri, node_.uri)) {
            mistakes.add(*item, "expected an item of the collection, Element in its namespace");
            isRight = false;
        } else {
            reading_.strictness()->checkAttributes(*item, nullptr, {});
            isRight = hasRightForm(itemType_, *item, empty_, mistakes) && isRight;
        }
    }
    return isRight;
}

int FromXMLElementVisitor::itemSize() {
    return CallerContract::hasVariableSize(itemType_) ? measureItems()
                                                      : Identifiers::typeSize(itemType_);
}

int FromXMLElementVisitor::measureItems() {
    int size = 0;
    for (const auto* item = firstElement(node_); item != nullptr; item = nextElement(*item)) {
        const auto value = parseValue(reading_, itemType_, *item, emptyOf(itemType_));
        const int found = value ? value->serializedSize() : 0;
        if (reading_.strictness() != nullptr) {
            if (item != firstElement(node_) && found != size) {
                reading_.strictness()->mistakes().add(
                    *item, "has " + std::to_string(found) + " bytes, expected " +
                               std::to_string(size) + " as the item before");
                return size;
            }
        } else if (size != 0 && found != size) {
            throwInvalidLength(CallerContract::Text::itemsHaveOneSize,
                               CallerContract::Text::itemsDiffer, CORVID_ELEMENT_VISITOR_HERE);
        }
        size = found;
    }
    return size;
}

void FromXMLElementVisitor::visit(Metadata::ReferenceElement& element) {
    const auto* child = firstElement(node_);
    if (reading_.strictness() != nullptr) {
        checkReferences(1);
    }
    if (child == nullptr) {
        return;
    }
    if (!isLink(*child)) {
        if (const auto* target = readInlineSet(*child)) {
            element.set(target);
        }
    } else if (auto reference = readLink(*child, type_)) {
        element.setUnverifiedReference(std::move(reference));
    } else if (reading_.strictness() == nullptr) {
        reading_.leaveOut(*child);
    }
}

/// Reports text and attributes, and sets or links beyond as many as there may be.
void FromXMLElementVisitor::checkReferences(std::size_t most) {
    Strictness& strictness = *reading_.strictness();
    refuseText(node_, strictness.mistakes());
    std::size_t count = 0;
    for (const auto* item = firstElement(node_); item != nullptr; item = nextElement(*item)) {
        if (++count == most + 1) {
            strictness.mistakes().add(*item, "expected no more than one set or link here");
        }
    }
}

void FromXMLElementVisitor::readReferences(Metadata::ReferenceCollectionElement& element) {
    if (reading_.strictness() != nullptr) {
        checkReferences(std::numeric_limits<std::size_t>::max() - 1);
    }
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
        } else if (reading_.strictness() == nullptr) {
            reading_.leaveOut(*item);
        }
    }
}

ReferenceHolder FromXMLElementVisitor::readLink(const DocumentNode& link,
                                                Identifiers::Identifier type) {
    if (Strictness* const strictness = reading_.strictness()) {
        const auto target = strictness->targetOf(link);
        return target ? makeReference(type, *target) : ReferenceHolder();
    }
    const DocumentNode* const name = link.firstAttribute;
    if (name == nullptr) {
        return {};
    }
    return makeReference(type, reading_.identifierOf(name->value, [] {
        return Types::Factories::UID::generateUUID(Types::Factories::UID::uniqueVersion);
    }));
}

Metadata::MetadataSet* FromXMLElementVisitor::readInlineSet(const DocumentNode& element) {
    const auto* definition = reading_.findSet(element);
    if (definition == nullptr) {
        if (reading_.strictness() != nullptr) {
            reading_.strictness()->refuseSet(element);
        } else {
            reading_.leaveOut(element);
        }
        return nullptr;
    }
    auto& set = reading_.makeSet(*definition, element);
    FromXMLMetadataSetVisitor reader(element, reading_);
    set.accept(reader);
    return &set;
}

} // namespace Corvid::XMLBuilder
