#include "host/mxf/SetReader.h"

#include "host/dictionary/MetaCollectionElement.h"
#include "host/dictionary/MetaMetadataSet.h"
#include "host/klv/BerOutput.h"
#include "host/mxf/LocalSet.h"
#include "host/types/ByteRuns.h"

#include <algorithm>
#include <optional>

namespace Corvid::mxf {

namespace {

using Metadata::Element;
using Metadata::MetadataSet;

/// What is wrong with a value that has not the form of its type.
std::string misfit(std::size_t size, const MetaMetadata::MetaElement& definition) {
    namespace Identifiers = Types::Identifiers;
    const auto type = definition.dataType();
    std::string name = Identifiers::typeName(type);
    if (definition.isCollection()) {
        const auto& collection =
            static_cast<const MetaMetadata::MetaCollectionElement&>(definition);
        name += std::string(" of ") + Identifiers::typeName(collection.dataSubType());
    }
    const auto expected = static_cast<std::size_t>(Identifiers::typeSize(type));
    return (size == 0
                ? std::string("the value is empty")
                : "the value has " + std::to_string(size) + (size == 1 ? " byte" : " bytes")) +
           ", expected " +
           (expected == 0 || expected == size
                ? "a valid " + name
                : std::to_string(expected) + (expected == 1 ? " byte (" : " bytes (") + name + ")");
}

/// How many octets the lengths of a set's properties have: those of one number, or more where a
/// length needs more. A set remembers no more than that number.
class LengthForm {
public:
    void take(std::size_t length, unsigned char octets) noexcept {
        const bool needsAll = KLV::berOctets(length, 1) == octets;
        least_ = std::max(least_, needsAll ? least_ : octets);
        most_ = std::min(most_, octets);
    }

    /// Whether there is such a number.
    bool isOne() const noexcept { return least_ <= most_; }
    unsigned char octets() const noexcept { return least_; }

private:
    unsigned char least_ = 1;
    unsigned char most_ = KLV::BerLength::greatestOctets;
};

struct Walk {
    std::size_t properties = 0;
    std::size_t rest = 0;          ///< bytes after the last property
    std::size_t greatestValue = 0; ///< bytes of the longest value
    std::optional<Types::UUID> instanceUID;
    LengthForm lengths;
};

/// @param isInstanceUID  whether a tag means the InstanceUID.
template <class IsInstanceUID>
Walk walk(const KLV::Key& key, Types::ByteView value, IsInstanceUID isInstanceUID) {
    Walk result;
    const bool hasBerLengths = KLV::hasBerLengths(key);
    LocalSet set(key, value);
    while (const auto property = set.next()) {
        ++result.properties;
        result.greatestValue = std::max(result.greatestValue, property->value.size);
        if (hasBerLengths) {
            result.lengths.take(property->value.size, property->lengthOctets);
        }
        if (!result.instanceUID && Types::UUID::fits(property->value) &&
            isInstanceUID(property->tag)) {
            result.instanceUID = Types::UUID(property->value);
        }
    }
    result.rest = value.size - set.position();
    return result;
}

struct Obstacle {
    const WarningKind* kind;
    std::string text;
};

/// Why the set can't be taken apart; nothing where it can.
std::optional<Obstacle> obstacleTo(const Walk& found, std::size_t size) {
    if (found.rest != 0) {
        return Obstacle{&WarningKinds::malformedSet, "the last " + std::to_string(found.rest) +
                                                         " of its " + std::to_string(size) +
                                                         " bytes are not a whole property"};
    }
    if (found.properties > greatestPropertyCount) {
        return Obstacle{&WarningKinds::manyProperties, "has " + std::to_string(found.properties) +
                                                           " properties, expected at most " +
                                                           std::to_string(greatestPropertyCount)};
    }
    if (found.greatestValue > Types::ByteRun::greatestSize) {
        return Obstacle{&WarningKinds::longProperty,
                        "has a property of " + std::to_string(found.greatestValue) +
                            " bytes, expected at most " +
                            std::to_string(Types::ByteRun::greatestSize)};
    }
    if (!found.lengths.isOne()) {
        return Obstacle{&WarningKinds::mixedLengths,
                        "the BER lengths of its properties are of several forms"};
    }
    return std::nullopt;
}

} // namespace

/// Where a warning is about.
struct SetReader::Place {
    const KLV::Key& key;
    const MetaMetadata::MetaMetadataSet* definition;
    std::uint64_t offset; ///< in bytes from the front of the file
    const TagMeaning* meaning = nullptr;
};

std::string nameOfSet(const KLV::Key& key, const MetaMetadata::MetaMetadataSet* definition) {
    const auto* name = definition == nullptr ? nullptr : definition->attribute("XMLTagName");
    return Platform::toUtf8(name == nullptr ? key.toString() : Utf16Text(name));
}

void SetReader::warn(const WarningKind& kind, const Place& place, std::string text) const {
    Warning warning(kind, std::move(text));
    warning.offset = place.offset;
    warning.set = nameOfSet(place.key, place.definition);
    if (place.meaning != nullptr) {
        warning.localTag = place.meaning->tag;
        warning.property = place.meaning->name();
    }
    warnings_.warn(warning);
}

std::optional<Types::UUID> identifierOfDarkGroup(const KLV::Key& key, Types::ByteView value,
                                                 const Metadata::PartitionDictionary& primer) {
    if (!KLV::isLocalSet(key) || primer.dictionary()->findSet(key) != nullptr) {
        return std::nullopt;
    }
    const Walk found = walk(key, value, [&primer](Types::u16 tag) {
        const auto* const label = primer.find(Types::LocalTag(tag), true);
        return label != nullptr && Metadata::Structural::isInstanceUID(*label);
    });
    return obstacleTo(found, value.size) ? std::nullopt : found.instanceUID;
}

const MetadataSet* SetReader::read(const KLV::Triplet& triplet, Types::ByteView value) {
    const auto& dictionary = *partition_.partitionDictionary().dictionary();
    const auto* definition = dictionary.findSet(triplet.key);
    if (definition == nullptr && !KLV::isLocalSet(triplet.key)) {
        addDark(triplet, value);
        return nullptr;
    }
    const Place place{triplet.key, definition, triplet.offset};
    const Walk found = walk(triplet.key, value,
                            [this](Types::u16 tag) { return meanings_.of(tag).isInstanceUID; });
    if (const auto obstacle = obstacleTo(found, value.size)) {
        warn(*obstacle->kind, place, obstacle->text + ", so the set is kept as a dark set");
        addDark(triplet, value);
        return nullptr;
    }
    if (definition == nullptr) {
        if (!found.instanceUID) {
            addDark(triplet, value);
            return nullptr;
        }
        auto& group = partition_.createDarkParsedGroup(triplet.key);
        group.setBerLength(triplet.length.octets);
        group.setPropertyBerLength(found.lengths.octets());
        fill(group, value);
        return &group;
    }
    MetadataSet& set = partition_.createEmptyMetadataSet(triplet.key, *definition);
    set.setBerLength(triplet.length.octets);
    set.setPropertyBerLength(found.lengths.octets());
    // A property that comes again or is none of the class is kept elsewhere, so a class bounds
    // them.
    set.reserve(std::min(found.properties, definition->attributes().size()));
    fill(set, value, triplet.valueOffset());
    if (!set.hasInstanceUID()) {
        warn(WarningKinds::noInstanceUID, place, "has no InstanceUID, so no reference leads to it");
    }
    return &set;
}

void SetReader::fill(MetadataSet& set, Types::ByteView value, std::uint64_t valueOffset) {
    LocalSet properties(set.key(), value);
    while (const auto property = properties.next()) {
        TagMeaning& meaning = meanings_.of(property->tag);
        addProperty(set, meaning, property->value,
                    {set.key(), set.metaMetadataSet(), valueOffset + property->offset, &meaning});
    }
}

void SetReader::addProperty(MetadataSet& set, TagMeaning& meaning, Types::ByteView bytes,
                            const Place& place) {
    if (!meaning.inPrimer && primer_ == Primer::there) {
        const bool isRegistered = meaning.label != nullptr;
        warn(isRegistered ? WarningKinds::primerLacksTag : WarningKinds::unknownTag, place,
             isRegistered ? "the primer pack lacks the tag, so the tag has its registered meaning"
                          : "the primer pack lacks the tag, so the property is kept as unknown");
    }
    const auto* attribute = meaning.attributeIn(*set.metaMetadataSet());
    if (attribute == nullptr) {
        addInvalid(set, meaning, bytes, place);
        return;
    }
    if (set.find(meaning.definition->label()) != nullptr) {
        warn(WarningKinds::repeatedProperty, place,
             "is in the set more than once; the first is the property, this one is kept beside it");
        addInvalid(set, meaning, bytes, place);
        return;
    }
    Element& element = set.createElement(meaning.definition->label(), *attribute, meaning.tag);
    if (!element.parse(bytes)) {
        addInvalid(set, meaning, bytes, place);
    }
}

/// Adds a property that is none of the set's class, or none that it may be.
void SetReader::addInvalid(MetadataSet& set, TagMeaning& meaning, Types::ByteView bytes,
                           const Place& place) {
    if (meaning.identifies) {
        warn(WarningKinds::unfitIdentifier, place,
             "can't be an identifier of the set, so it is kept as bytes");
    } else if (meaning.definition != nullptr) {
        // An element cannot be taken back, so whether the bytes fit is tried on one of its own.
        if (Metadata::createElement(meaning.misplaced)->parse(bytes)) {
            set.createInvalidElement(meaning.misplaced, meaning.tag).parse(bytes);
            return;
        }
        warn(WarningKinds::unfitValue, place,
             misfit(bytes.size, *meaning.definition) + ", so it is kept as bytes");
    }
    set.createInvalidElement(meaning.definition == nullptr ? meaning.unknown : meaning.unfit,
                             meaning.tag)
        .parse(bytes);
}

void SetReader::fill(Metadata::DarkParsedGroup& group, Types::ByteView value) {
    LocalSet properties(group.key(), value);
    while (const auto property = properties.next()) {
        const TagMeaning& meaning = meanings_.of(property->tag);
        if (meaning.isInstanceUID && !group.hasInstanceUID() &&
            Types::UUID::fits(property->value)) {
            group.setInstanceUID(Types::UUID(property->value), property->tag);
        } else {
            group.createInvalidElement(meaning.unknown, property->tag).parse(property->value);
        }
    }
}

void SetReader::addDark(const KLV::Triplet& triplet, Types::ByteView value) {
    KLV::Value bytes(value.data, value.size);
    partition_.addDarkMetadataSet(Templates::auto_ptr<Metadata::DarkMetadataSet>(
        new Metadata::DarkMetadataSet(triplet.key, triplet.length.octets, bytes)));
}

} // namespace Corvid::mxf
