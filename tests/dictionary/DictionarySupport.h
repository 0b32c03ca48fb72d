#pragma once

#include "host/base/Exceptions.h"
#include "host/base/Text.h"
#include "host/dictionary/AbstractMetaAttributeVisitor.h"
#include "host/dictionary/Dictionary.h"
#include "host/dictionary/MetaAttribute.h"
#include "tests/support/Paths.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace Corvid::Testing {

/// A meta attribute as UTF-8; "(none)" where there is none.
inline std::string textOf(const MetaMetadata::MetaDefinition& definition, const char* name) {
    const unsigned short* text = definition.attribute(name);
    return text == nullptr ? "(none)" : Platform::toUtf8(text);
}

/// prefix:name
inline std::string nameOf(const MetaMetadata::MetaDefinition& definition) {
    return textOf(definition, "XMLDefaultPrefix") + ":" + textOf(definition, "XMLTagName");
}

inline unsigned long schemaIndexOf(const MetaMetadata::MetaElement& element) {
    return std::stoul(textOf(element, "SchemaIndex"));
}

inline Types::UniversalLabel label(const std::string& text) {
    return Types::UniversalLabel(Platform::widen(text).c_str(), Types::dottedHexadecimal);
}

inline KLV::Key key(const std::string& text) {
    return KLV::Key(Platform::widen(text).c_str(), Types::dottedHexadecimal);
}

template <class Identifier> std::string dotted(const Identifier& identifier) {
    return Platform::toUtf8(identifier.toString(Types::dottedHexadecimal));
}

inline std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Gives the MetaAttribute that an attribute is, or null.
inline const MetaMetadata::MetaAttribute* metaAttribute(
    const MetaMetadata::AbstractMetaAttribute& attribute) {
    struct Visitor : MetaMetadata::AbstractMetaAttributeVisitor {
        const MetaMetadata::MetaAttribute* found = nullptr;
        void visit(const MetaMetadata::UnknownAttribute&) override {}
        void visit(const MetaMetadata::MisplacedAttribute&) override {}
        void visit(const MetaMetadata::MetaAttribute& known) override { found = &known; }
    } visitor;
    attribute.accept(visitor);
    return visitor.found;
}

/// The properties of a set, inherited ones included, in their order.
inline std::vector<const MetaMetadata::MetaAttribute*> propertiesOf(
    const MetaMetadata::MetaMetadataSet& set) {
    std::vector<const MetaMetadata::MetaAttribute*> result;
    for (const auto& attribute : set.attributes()) {
        result.push_back(metaAttribute(*attribute));
    }
    return result;
}

inline const MetaMetadata::MetaMetadataSet* findSetByTag(const MetaMetadata::Dictionary& dictionary,
                                                         const std::string& tag) {
    const auto found =
        std::find_if(dictionary.metaMetadataSetBegin(), dictionary.metaMetadataSetEnd(),
                     [&tag](const auto* set) { return textOf(*set, "XMLTagName") == tag; });
    return found == dictionary.metaMetadataSetEnd() ? nullptr : *found;
}

/// Texts with their memory.
class OwnedTexts {
public:
    void add(const std::string& name, const std::string& content) {
        owned_.emplace_back(name, content);
    }
    MetaMetadata::Dictionary::Texts texts() const {
        MetaMetadata::Dictionary::Texts result;
        for (const auto& [name, content] : owned_) {
            result.push_back({name, content});
        }
        return result;
    }

private:
    std::vector<std::pair<std::string, std::string>> owned_;
};

/// The definitions in these folders, in reverse order of their names: a dictionary does not depend
/// on the order.
inline OwnedTexts textsIn(std::initializer_list<const char*> folders) {
    std::vector<std::filesystem::path> paths;
    for (const char* const folder : folders) {
        for (const auto& entry :
             std::filesystem::directory_iterator(sourceDir() / "host" / "dictionary" / folder)) {
            if (entry.path().extension() == ".dict") {
                paths.push_back(entry.path());
            }
        }
    }
    std::sort(paths.rbegin(), paths.rend());
    OwnedTexts result;
    for (const auto& path : paths) {
        result.add(path.filename().string(), contentOf(path));
    }
    return result;
}

/// The texts of what the SMPTE registers hold.
inline OwnedTexts smpteTexts() { return textsIn({"smpte"}); }
/// The same with what is in use but not registered: the texts of the built-in dictionary.
inline OwnedTexts builtInTexts() { return textsIn({"smpte", "beyond"}); }

/// The message of the exception that an extension of the built-in dictionary meets, or "".
inline std::string refusalOf(const OwnedTexts& texts) {
    try {
        MetaMetadata::Dictionary::extend(*MetaMetadata::Dictionary::builtIn(), texts.texts());
    } catch (const Exceptions::InvalidDictionary& error) {
        return Platform::toUtf8(error.message());
    }
    return "";
}

} // namespace Corvid::Testing
