#include "host/mxf/rewrite/SetCoding.h"

#include "host/base/Exceptions.h"
#include "host/dataio/Memory.h"
#include "host/klv/BerOutput.h"

#include <limits>

namespace Corvid::mxf {

namespace {

constexpr Types::u16 firstDynamicTag = 0x8000;

std::string textOf(Types::u16 tag) { return Platform::toUtf8(Types::LocalTag(tag).toString()); }

/// Appends a number of the type's size.
template <class Number> void appendNumber(Bytes& to, Number number) {
    Types::u8 bytes[sizeof(Number)];
    Types::writeBigEndian(bytes, number);
    append(to, {bytes, sizeof bytes});
}

/// How the properties of a set are coded.
struct PropertyForm {
    bool hasBerLengths = false;
    unsigned char octets = 2; ///< of a length, or more where a BER length needs more
};

void appendProperty(Bytes& to, Types::u16 tag, const Bytes& value, PropertyForm form) {
    appendNumber(to, tag);
    if (form.hasBerLengths) {
        DataIO::Memory::MemoryDataSink length;
        KLV::writeBer(length, value.size(), form.octets);
        append(to, {length.rawBuffer(), length.serializedSize()});
    } else if (value.size() > std::numeric_limits<Types::u16>::max()) {
        throw Exceptions::LimitExceeded("property " + textOf(tag) + ": the value has " +
                                            std::to_string(value.size()) +
                                            " bytes, expected at most 65535",
                                        CORVID_HERE);
    } else {
        appendNumber(to, static_cast<Types::u16>(value.size()));
    }
    append(to, viewOf(value));
}

/// The properties of a set by name: their numbers in the order of the file.
class PropertyIndex {
public:
    PropertyIndex(const HeaderLayout& layout, const LayoutItem& set) {
        LocalSet properties = layout.properties(set);
        for (std::size_t number = 0; const auto property = properties.next(); ++number) {
            byTag_[property->tag].push_back(number);
            if (const auto* label = layout.label(property->tag)) {
                byLabel_[label->withoutVersion()].push_back(number);
            }
        }
    }

    /// @throws InvalidArgument  there is none.
    std::size_t find(const PropertyName& name) const {
        const auto* tag = std::get_if<Types::u16>(&name.name);
        const Numbers* numbers =
            tag != nullptr
                ? at(byTag_, *tag)
                : at(byLabel_, std::get<Types::UniversalLabel>(name.name).withoutVersion());
        if (numbers == nullptr || name.occurrence >= numbers->size()) {
            throw Exceptions::InvalidArgument(
                "the set has no property " +
                    (tag != nullptr ? textOf(*tag)
                                    : Platform::toUtf8(
                                          std::get<Types::UniversalLabel>(name.name).toString())) +
                    (name.occurrence == 0 ? "" : " number " + std::to_string(name.occurrence + 1)),
                CORVID_HERE);
        }
        return (*numbers)[name.occurrence];
    }

private:
    using Numbers = Templates::vector<std::size_t>;

    template <class Map>
    static const Numbers* at(const Map& map, const typename Map::key_type& key) {
        const auto found = map.find(key);
        return found == map.end() ? nullptr : &found->second;
    }

    Templates::map<Types::u16, Numbers> byTag_;
    Templates::map<std::array<Types::u8, 16>, Numbers> byLabel_;
};

} // namespace

Types::u16 TagGiver::tagOf(const NewProperty& property) {
    if (const auto tag = layout_.tag(property.label)) {
        return *tag;
    }
    const auto label = property.label.withoutVersion();
    if (const auto given = given_.find(label); given != given_.end()) {
        return given->second;
    }
    if (!layout_.hasPrimer()) {
        // Every tag has its registered meaning.
        if (property.staticTag != 0) {
            return property.staticTag;
        }
        throw Exceptions::InvalidFormat("there is no primer pack that could give a tag to the "
                                        "property " +
                                            Platform::toUtf8(property.label.toString()),
                                        CORVID_HERE);
    }
    if (!layout_.hasSoundPrimer()) {
        throw Exceptions::InvalidFormat(
            "byte " + std::to_string(layout_.begin()) +
                ": the primer pack contradicts itself, so it can't get an entry for the property " +
                Platform::toUtf8(property.label.toString()),
            CORVID_HERE);
    }
    const Types::u16 tag = freeTag(property.staticTag);
    entries_.emplace_back(tag, property.label);
    given_.emplace(label, tag);
    givenTags_.emplace(tag, true);
    return tag;
}

Types::u16 TagGiver::freeTag(Types::u16 staticTag) {
    // A set that has a static tag without an entry means the registered label.
    if (staticTag != 0 && layout_.label(staticTag) == nullptr && givenTags_.count(staticTag) == 0) {
        return staticTag;
    }
    while (nextDynamicTag_ >= firstDynamicTag && layout_.isTagInUse(nextDynamicTag_)) {
        --nextDynamicTag_;
    }
    if (nextDynamicTag_ < firstDynamicTag) {
        throw Exceptions::LimitExceeded(
            "all 32768 dynamic local tags of the partition are in use, so a property gets none",
            CORVID_HERE);
    }
    return nextDynamicTag_--;
}

Bytes TagGiver::primerValue() const {
    constexpr std::size_t headSize = 8;
    constexpr std::size_t entrySize = 18;
    const Types::ByteView old = layout_.value(layout_.items().front());
    Bytes value;
    appendNumber(value,
                 static_cast<Types::u32>((old.size - headSize) / entrySize + entries_.size()));
    appendNumber(value, static_cast<Types::u32>(entrySize));
    append(value, {old.data + headSize, old.size - headSize});
    for (const auto& [tag, label] : entries_) {
        appendNumber(value, tag);
        append(value, {label.bytes().data(), label.bytes().size()});
    }
    return value;
}

Bytes codeSet(const HeaderLayout& layout, const SetChange& change, TagGiver& tags) {
    const LayoutItem& set = layout.items()[change.item];
    Templates::map<std::size_t, const PropertyChange*> changes;
    if (!change.properties.empty()) {
        const PropertyIndex index(layout, set);
        for (const PropertyChange& each : change.properties) {
            if (!changes.emplace(index.find(each.property), &each).second) {
                throw Exceptions::InvalidArgument("a property of the set changes twice",
                                                  CORVID_HERE);
            }
        }
    }
    PropertyForm form;
    form.hasBerLengths = KLV::hasBerLengths(set.triplet.key);
    Bytes value;
    const Types::ByteView old = layout.value(set);
    LocalSet properties = layout.properties(set);
    auto next = changes.begin();
    for (std::size_t number = 0; const auto property = properties.next(); ++number) {
        const bool changesIt = next != changes.end() && next->first == number;
        if (!changesIt) {
            append(value, {old.data + property->offset, properties.position() - property->offset});
        } else if (next->second->value) {
            appendProperty(value, property->tag, *next->second->value,
                           {form.hasBerLengths, property->lengthOctets});
        }
        if (changesIt) {
            ++next;
        }
        if (number == 0) {
            form.octets = property->lengthOctets;
        }
    }
    for (const NewProperty& property : change.added) {
        appendProperty(value, tags.tagOf(property), property.value, form);
    }
    return value;
}

Bytes codeSet(const NewSet& set, TagGiver& tags) {
    const PropertyForm form{KLV::hasBerLengths(set.key), 1};
    Bytes value;
    for (const NewProperty& property : set.properties) {
        appendProperty(value, tags.tagOf(property), property.value, form);
    }
    return value;
}

} // namespace Corvid::mxf
