#pragma once

#include "host/dictionary/Dictionary.h"

#include <string>
#include <vector>

namespace Corvid::Inspection {

/// What a name means.
struct NamedDefinitions {
    std::vector<const MetaMetadata::MetaElement*> properties;
    std::vector<const MetaMetadata::MetaMetadataSet*> classes;
    std::vector<std::string> ambiguous; ///< prefix:name of those of which the prefix must say which

    bool isEmpty() const noexcept { return properties.empty() && classes.empty(); }
};

/// Finds the definitions of a name: those that have it letter by letter; else those that have it
/// but for case, blanks and punctuation, and those that other documents call so.
/// @param name  with its prefix or without. UTF-8
NamedDefinitions findDefinitions(const MetaMetadata::Dictionary& dictionary,
                                 const std::string& name);

/// Names of the dictionary that are much like one that means nothing; the most similar first.
std::vector<std::string> nearDefinitions(const MetaMetadata::Dictionary& dictionary,
                                         const std::string& name);

} // namespace Corvid::Inspection
