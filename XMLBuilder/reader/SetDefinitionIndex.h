#pragma once

#include <map>
#include <string_view>

namespace Corvid::MetaMetadata {
class Dictionary;
class MetaMetadataSet;
} // namespace Corvid::MetaMetadata

namespace Corvid::XMLBuilder {

/// The set classes of a dictionary by their names in XML. Of two with one name the first in the
/// dictionary's order counts.
class SetDefinitionIndex {
public:
    /// @param dictionary  must outlive the index.
    explicit SetDefinitionIndex(const MetaMetadata::Dictionary& dictionary);

    /// The class of an element by its local name, exactly as written, or null.
    const MetaMetadata::MetaMetadataSet* find(const char16_t* localName) const;

private:
    // No hash: a dictionary could choose names that share one.
    std::map<std::u16string_view, const MetaMetadata::MetaMetadataSet*> definitions_;
};

} // namespace Corvid::XMLBuilder
