#pragma once

#include <string>
#include <unordered_map>

namespace Corvid::MetaMetadata {
class MetaDefinition;
class MetaElement;
class MetaMetadataSet;
} // namespace Corvid::MetaMetadata

namespace Corvid::XMLBuilder {

/// "prefix:Symbol".
std::string qualifiedKeyOf(const MetaMetadata::MetaDefinition& definition);

/// What members of JSON objects are called that are properties of sets: by their symbols. Where a
/// class has several of one symbol, that of the SMPTE registers has it and the others have their
/// prefixes in front.
class PropertyKeys {
public:
    const std::string& keyOf(const MetaMetadata::MetaMetadataSet& setClass,
                             const MetaMetadata::MetaElement& property);

private:
    using Keys = std::unordered_map<const MetaMetadata::MetaElement*, std::string>;

    const Keys& keysOf(const MetaMetadata::MetaMetadataSet& setClass);

    std::unordered_map<const MetaMetadata::MetaMetadataSet*, Keys> classes_;
    Keys elsewhere_; ///< of properties that their class does not list
};

} // namespace Corvid::XMLBuilder
