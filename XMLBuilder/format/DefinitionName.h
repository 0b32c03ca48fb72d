#pragma once

#include "XMLBuilder/format/HashedName.h"
#include "XMLBuilder/format/Namespaces.h"
#include "host/base/Attached.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Corvid::MetaMetadata {
class MetaDefinition;
class MetaElement;
class MetaMetadataSet;
} // namespace Corvid::MetaMetadata

namespace Corvid::XMLBuilder {

/// A text of a definition, zero-terminated; empty where the dictionary lacks it.
const char16_t* textOf(const MetaMetadata::MetaDefinition& definition, const char* attribute);

/// How documents name the definition of a set or a property. Zero-terminated texts; they live as
/// long as the definition, with which they are kept.
struct DefinitionName : Platform::Attached::Content {
    Names::Namespace names;
    HashedName local;
    std::u16string qualified;

protected:
    explicit DefinitionName(const MetaMetadata::MetaDefinition& definition);
    ~DefinitionName() override;
};

/// How documents have a property.
struct PropertyName final : DefinitionName {
    /// Where readers look for it, in the element of its set.
    enum class Place : unsigned char {
        child,             ///< a child element
        instanceAttribute, ///< the attribute that identifies the set
        otherAttribute,    ///< another attribute
    };

    explicit PropertyName(const MetaMetadata::MetaElement& of);

    const MetaMetadata::MetaElement& definition;
    std::u16string item; ///< the name of an item of a collection
    /// Its place among the properties of a set; nothing where documents have no place for it.
    std::optional<std::uint32_t> order;

    // InstanceUID and GenerationUID are attributes of their set. By contract writers go by the
    // qualified name and readers by the local one. No dictionary shows the difference, for it
    // keeps these local names to one namespace; a definition that a program makes does.
    bool isWrittenAsAttribute;
    Place place = Place::child;
    const char16_t* attribute = nullptr; ///< the qualified name that readers look for; null for a
                                         ///< child
};

/// The properties of a class of sets, those of its ancestors among them.
struct ClassProperties final : Platform::Attached::Content {
    explicit ClassProperties(const MetaMetadata::MetaMetadataSet& setClass);

    std::vector<const PropertyName*> byLabel; ///< as sets list their elements
    /// As they follow one another in documents; without those that these have no place for.
    std::vector<const PropertyName*> inDocuments;
};

/// How documents have a class of sets.
struct ClassName final : DefinitionName {
    explicit ClassName(const MetaMetadata::MetaMetadataSet& of);

    const MetaMetadata::MetaMetadataSet& definition;
    std::u16string link; ///< of a link to a set of the class: its own name with "_REF" after it

    /// Listed when they are first asked for: a writer does not need them.
    const ClassProperties& properties() const;

private:
    Platform::Attached properties_;
};

/// The name of a definition, made when it is first asked for, by whatever thread.
const PropertyName& nameOf(const MetaMetadata::MetaElement& definition);
const ClassName& nameOf(const MetaMetadata::MetaMetadataSet& definition);

} // namespace Corvid::XMLBuilder
