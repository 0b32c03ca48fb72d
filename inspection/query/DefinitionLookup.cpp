#include "inspection/query/DefinitionLookup.h"

#include "host/base/NearNames.h"
#include "host/dictionary/DefinitionNames.h"
#include "host/dictionary/MetaElement.h"
#include "host/dictionary/Registers.h"

#include <algorithm>

namespace Corvid::Inspection {

namespace {

using MetaMetadata::Dictionary;
using MetaMetadata::MetaDefinition;
using MetaMetadata::tagName;

std::string prefixOf(const MetaDefinition& definition) {
    const auto* const prefix = definition.attribute("XMLDefaultPrefix");
    return prefix == nullptr ? "" : Platform::toUtf8(prefix);
}

/// What a path has for a name.
struct Wanted {
    explicit Wanted(const std::string& text) {
        const auto colon = text.find(':');
        hasPrefix = colon != std::string::npos;
        prefix = text.substr(0, hasPrefix ? colon : 0);
        name = text.substr(hasPrefix ? colon + 1 : 0);
    }

    bool hasPrefixOf(const MetaDefinition& definition) const {
        return !hasPrefix || prefixOf(definition) == prefix;
    }

    bool hasPrefix = false;
    std::string prefix;
    std::string name;
};

/// Adds those that fulfil a condition and are not there yet.
template <class Definition, class Iterator, class Is>
void add(std::vector<const Definition*>& found, Iterator begin, Iterator end, Is is) {
    for (Iterator each = begin; each != end; ++each) {
        if (is(**each) && std::find(found.begin(), found.end(), *each) == found.end()) {
            found.push_back(*each);
        }
    }
}

template <class Is> void add(NamedDefinitions& found, const Dictionary& dictionary, Is is) {
    add(found.properties, dictionary.metaElementBegin(), dictionary.metaElementEnd(), is);
    add(found.classes, dictionary.metaMetadataSetBegin(), dictionary.metaMetadataSetEnd(), is);
}

void addAliases(NamedDefinitions& found, const Dictionary& dictionary, const Wanted& wanted) {
    const std::string folded = Platform::folded(wanted.name);
    for (const auto& alias : MetaMetadata::Registers::aliases()) {
        if (Platform::folded(std::string(alias.name())) != folded) {
            continue;
        }
        add(found, dictionary, [&](const MetaDefinition& definition) {
            return isCalled(definition, alias.definition()) && wanted.hasPrefixOf(definition);
        });
    }
}

template <class Definition>
void addAmbiguous(const std::vector<const Definition*>& found, std::vector<std::string>& names) {
    if (found.size() > 1) {
        for (const Definition* const each : found) {
            names.push_back(prefixedName(*each));
        }
    }
}

void addAmbiguous(NamedDefinitions& found) {
    addAmbiguous(found.properties, found.ambiguous);
    addAmbiguous(found.classes, found.ambiguous);
}

} // namespace

NamedDefinitions findDefinitions(const Dictionary& dictionary, const std::string& name) {
    const Wanted wanted(name);
    NamedDefinitions found;
    add(found, dictionary,
        [&](const MetaDefinition& definition) { return isCalled(definition, name); });
    if (found.isEmpty()) {
        const std::string folded = Platform::folded(wanted.name);
        add(found, dictionary, [&](const MetaDefinition& definition) {
            return !folded.empty() && Platform::folded(tagName(definition)) == folded &&
                   wanted.hasPrefixOf(definition);
        });
        addAmbiguous(found);
        addAliases(found, dictionary, wanted);
        return found;
    }
    addAmbiguous(found);
    return found;
}

std::vector<std::string> nearDefinitions(const Dictionary& dictionary, const std::string& name) {
    const Wanted wanted(name);
    Platform::NearNames near(wanted.name);
    const auto offer = [&near](const MetaDefinition* definition) {
        near.offer(tagName(*definition));
    };
    std::for_each(dictionary.metaElementBegin(), dictionary.metaElementEnd(), offer);
    std::for_each(dictionary.metaMetadataSetBegin(), dictionary.metaMetadataSetEnd(), offer);
    for (const auto& alias : MetaMetadata::Registers::aliases()) {
        near.offer(std::string(alias.name()));
    }
    return near.best();
}

} // namespace Corvid::Inspection
