#pragma once

#include "host/base/Exceptions.h"
#include "host/dictionary/Dictionary.h"
#include "host/dictionary/MetaElement.h"
#include "host/dictionary/MisplacedAttribute.h"
#include "host/dictionary/UnknownAttribute.h"
#include "host/metadata/PartitionMetadata.h"
#include "host/types/Types.h"

#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

namespace Corvid::Testing {

/// A UUID whose last byte is the number and whose other bytes are zero.
inline Types::UUID uuid(Types::u8 number) {
    std::array<Types::u8, 16> bytes{};
    bytes[15] = number;
    return Types::UUID(bytes);
}

/// The text that uuid(number) has in a document.
inline std::string uuidText(Types::u8 number) { return Platform::toUtf8(uuid(number).toString()); }

/// A partition that a test fills by the names of the dictionary.
class Model {
public:
    using Set = Metadata::MetadataSet;

    explicit Model(Templates::SharedPtr<MetaMetadata::Dictionary> dictionary =
                       MetaMetadata::Dictionary::builtIn())
        : partition(std::move(dictionary)) {}

    /// A model over the built-in dictionary and an extension of it.
    static Model extendedBy(std::string_view text) {
        // Many tests share a text, and dictionaries do not change.
        static std::map<std::string, Templates::SharedPtr<MetaMetadata::Dictionary>> made;
        try {
            auto& dictionary = made[std::string(text)];
            if (!dictionary) {
                MetaMetadata::Dictionary::Texts texts;
                texts.push_back({"test.dict", text});
                dictionary =
                    MetaMetadata::Dictionary::extend(*MetaMetadata::Dictionary::builtIn(), texts);
            }
            return Model(dictionary);
        } catch (const Exceptions::BaseException& e) {
            throw std::invalid_argument(Platform::toUtf8(e.message()));
        }
    }

    const MetaMetadata::Dictionary& dictionary() {
        return *partition.partitionDictionary().dictionary();
    }

    /// Adds a set with nothing but an InstanceUID.
    Set& set(std::string_view tag, Types::u8 instance) {
        const auto& definition = setDefinition(tag);
        Set& made = partition.createEmptyMetadataSet(definition.key(), definition);
        value(made, "InstanceUID", uuid(instance));
        return made;
    }

    /// Adds a group that the dictionary does not know.
    Metadata::DarkParsedGroup& darkGroup(Types::u8 instance) {
        auto& group = partition.createDarkParsedGroup(KLV::Key(darkKey()));
        group.setInstanceUID(uuid(instance), 0x3C0A);
        return group;
    }

    static std::array<unsigned char, 16> darkKey() {
        return {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01, 0x0e, 0x7f, 0x7f, 0x7f, 1, 2, 3, 0};
    }

    /// Adds a property that the set's class lists, without value.
    template <class Kind = Metadata::Element> Kind& element(Set& set, std::string_view tag) {
        for (const auto& attribute : set.metaMetadataSet()->attributes()) {
            const auto* definition = attribute->facts().definition;
            if (nameOf(*definition) == tag) {
                return dynamic_cast<Kind&>(set.createElement(definition->label(), attribute));
            }
        }
        throw std::invalid_argument("no property " + std::string(tag) + " in that set");
    }

    /// Adds a property of another class, without value.
    template <class Kind = Metadata::Element> Kind& misplaced(Set& set, std::string_view tag) {
        return dynamic_cast<Kind&>(set.createInvalidElement(Metadata::Element::Attribute(
            new MetaMetadata::MisplacedAttribute(elementDefinition(tag)))));
    }

    /// Adds a property of which only the tag is known, with bytes.
    void unknown(Set& set, Types::u16 tag, std::string_view bytes) {
        auto& made = dynamic_cast<Metadata::SimpleElement&>(set.createInvalidElement(
            Metadata::Element::Attribute(new MetaMetadata::UnknownAttribute(
                Types::LocalTag(tag), MetaMetadata::UnknownAttribute::unknownLabel)),
            tag));
        made.parse(view(bytes));
    }

    template <class T> void value(Set& set, std::string_view tag, const T& value) {
        element<Metadata::SimpleElement>(set, tag).set(value.clone());
    }

    void reference(Set& set, std::string_view tag, Types::u8 target) {
        element(set, tag).parse(Types::ByteView{uuid(target).rawBuffer(), 16});
    }

    void references(Set& set, std::string_view tag, std::initializer_list<Types::u8> targets) {
        auto& made = element(set, tag);
        std::string bytes{0, 0, 0, static_cast<char>(targets.size()), 0, 0, 0, 16};
        for (const Types::u8 target : targets) {
            bytes.append(15, '\0');
            bytes.push_back(static_cast<char>(target));
        }
        made.parse(view(bytes));
    }

    void darkSet(const std::array<unsigned char, 16>& key, unsigned char berLength,
                 std::string_view bytes) {
        KLV::Value value(view(bytes).data, bytes.size());
        partition.addDarkMetadataSet(Templates::auto_ptr<Metadata::DarkMetadataSet>(
            new Metadata::DarkMetadataSet(KLV::Key(key), berLength, value)));
    }

    static Types::ByteView view(std::string_view bytes) {
        return {reinterpret_cast<const Types::u8*>(bytes.data()), bytes.size()};
    }

    Metadata::PartitionMetadata partition;

private:
    static std::string nameOf(const MetaMetadata::MetaDefinition& definition) {
        return Platform::toUtf8(definition.attribute("XMLTagName"));
    }

    const MetaMetadata::MetaMetadataSet& setDefinition(std::string_view tag) {
        for (auto i = dictionary().metaMetadataSetBegin(); i != dictionary().metaMetadataSetEnd();
             ++i) {
            if (nameOf(**i) == tag) {
                return **i;
            }
        }
        throw std::invalid_argument("no set class " + std::string(tag));
    }

    const MetaMetadata::MetaElement& elementDefinition(std::string_view tag) {
        for (auto i = dictionary().metaElementBegin(); i != dictionary().metaElementEnd(); ++i) {
            if (nameOf(**i) == tag) {
                return **i;
            }
        }
        throw std::invalid_argument("no property " + std::string(tag));
    }
};

} // namespace Corvid::Testing
