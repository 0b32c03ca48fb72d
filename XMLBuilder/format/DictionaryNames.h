#pragma once

#include "host/base/Attached.h"

#include <string_view>

namespace Corvid::MetaMetadata {
class Dictionary;
class MetaElement;
class MetaMetadataSet;
} // namespace Corvid::MetaMetadata

namespace Corvid::XMLBuilder {

/// The definitions of a dictionary by their names in documents. Of two with one name the first in
/// the dictionary's order counts.
///
/// A reader finds a definition by its name; a writer comes from the definition and asks
/// nameOf(). Each index is made when something is first looked for in it, by whatever thread.
class DictionaryNames final : public Platform::Attached::Content {
public:
    /// @param dictionary  must outlive the object.
    explicit DictionaryNames(const MetaMetadata::Dictionary& dictionary) noexcept
        : dictionary_(dictionary) {}

    /// The class of a local name, in whatever namespace, or null.
    const MetaMetadata::MetaMetadataSet* findSet(std::u16string_view local) const;

    /// The class or property of a namespace and local name, or null.
    const MetaMetadata::MetaMetadataSet* findSet(std::u16string_view uri,
                                                 std::u16string_view local) const;
    const MetaMetadata::MetaElement* findProperty(std::u16string_view uri,
                                                  std::u16string_view local) const;

    /// Whether there is a class in a namespace.
    bool hasSetsIn(std::u16string_view uri) const;

private:
    const MetaMetadata::Dictionary& dictionary_;
    Platform::Attached setsByLocal_;
    Platform::Attached sets_;
    Platform::Attached namespacesOfSets_;
    Platform::Attached properties_;
};

/// Those of a dictionary, which keeps them.
const DictionaryNames& namesOf(const MetaMetadata::Dictionary& dictionary);

} // namespace Corvid::XMLBuilder
