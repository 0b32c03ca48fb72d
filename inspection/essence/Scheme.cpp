#include "inspection/essence/Scheme.h"

#include "host/dictionary/DefinitionNames.h"
#include "host/dictionary/MetaElement.h"
#include "host/metadata/Names.h"
#include "inspection/essence/Describe.h"
#include "inspection/essence/FieldText.h"
#include "inspection/essence/Packages.h"
#include "inspection/essence/Urn.h"

#include <algorithm>

namespace Corvid::Inspection {

namespace {

using Metadata::MetadataSet;
using Structural::SetClass;

/// Sets that nest out of all proportion end here.
constexpr int deepestSet = 8;
/// The fields of a scheme without phrases of its own that a line shows.
constexpr std::size_t fieldsShown = 4;

struct SchemeName {
    Types::u64 item;
    unsigned length;
    const char* name;
};
constexpr SchemeName schemeNames[] = {
#define CORVID_SCHEME(item, length, name) {item, length, name},
#include "inspection/essence/SchemeNames.def"
};

struct SchemePhrase {
    Types::u64 item;
    std::string_view phrase;
};
constexpr SchemePhrase schemePhrases[] = {
#define CORVID_SCHEME_FIELD(item, phrase) {item, phrase},
#include "inspection/essence/SchemeNames.def"
};

std::string schemeOf(const KLV::Key& key) {
    const Types::u64 item = Structural::itemOf(key.bytes());
    for (const SchemeName& each : schemeNames) {
        if (Structural::beginAlike(item, each.item, each.length)) {
            return each.name;
        }
    }
    return "";
}

std::vector<SchemeSet::Field> fieldsOf(const MetadataSet& set) {
    using Place = std::pair<unsigned long, SchemeSet::Field>;
    std::vector<Place> places;
    for (const auto& [label, element] : set.made()) {
        const auto* const definition = element->definition();
        // Identifiers of sets say nothing of the clip.
        if (definition == nullptr || Metadata::Structural::identifies(label)) {
            continue;
        }
        std::string value = fieldText(*element);
        if (!value.empty()) {
            places.push_back({MetaMetadata::schemaIndex(*definition),
                              {label, MetaMetadata::tagName(*definition), std::move(value)}});
        }
    }
    std::stable_sort(places.begin(), places.end(),
                     [](const Place& a, const Place& b) { return a.first < b.first; });
    std::vector<SchemeSet::Field> fields;
    fields.reserve(places.size());
    for (Place& place : places) {
        fields.push_back(std::move(place.second));
    }
    return fields;
}

class SchemeWalk {
public:
    SchemeWalk(Walk& walk, Schemes& schemes) : walk_(walk), schemes_(schemes) {}

    void visit(const Packages::Package& package) {
        for (const auto& track : package.tracks) {
            for (const auto* segment : walk_.next(*track.set, Structural::trackSegment)) {
                add(package, *segment);
                for (const auto* part : walk_.next(*segment, Structural::components)) {
                    add(package, *part);
                }
            }
        }
    }

private:
    void add(const Packages::Package& package, const MetadataSet& component) {
        if (!isA(component, SetClass::descriptiveMarker)) {
            return;
        }
        for (const auto* set : walk_.next(component, Structural::descriptiveFrameworkObject)) {
            const auto contexts = walk_.next(*set, Structural::cryptographicContextObject);
            for (const auto* context : contexts) {
                addEncryption(package, *context);
            }
            if (contexts.empty()) {
                add(*set, 0);
            }
        }
    }

    void add(const MetadataSet& set, int depth) {
        schemes_.sets.push_back({schemeOf(set.key()), className(set), fieldsOf(set)});
        if (depth != deepestSet) {
            for (const auto* owned : walk_.next(set)) {
                add(*owned, depth + 1);
            }
        }
    }

    void addEncryption(const Packages::Package& package, const MetadataSet& context) {
        Encryption encryption;
        if (const auto* key = find(context, Structural::cryptographicKeyId)) {
            encryption.key = uuidUrn(key->rawBuffer());
        }
        if (const auto* format = find(context, Structural::sourceContainerFormat)) {
            encryption.container = *format;
        }
        schemes_.encryptions.emplace(package.set, encryption);
    }

    Walk& walk_;
    Schemes& schemes_;
};

std::string filled(std::string_view phrase, const std::string& value) {
    std::string text(phrase);
    return text.replace(text.find("{}"), 2, value);
}

using Values = std::map<Types::u64, const std::string*>;

std::vector<std::string> phrasesOf(const Values& values) {
    std::vector<std::string> phrases;
    for (const SchemePhrase& each : schemePhrases) {
        const auto value = values.find(each.item);
        if (value == values.end()) {
            continue;
        }
        const std::string text = filled(each.phrase, *value->second);
        if (text[0] == ' ' && !phrases.empty()) {
            phrases.back() += text;
        } else {
            phrases.push_back(text[0] == ' ' ? text.substr(1) : text);
        }
    }
    return phrases;
}

} // namespace

Schemes describeSchemes(Walk& walk, const Packages& packages) {
    Schemes schemes;
    SchemeWalk schemeWalk(walk, schemes);
    for (const auto& package : packages.all()) {
        schemeWalk.visit(package);
    }
    return schemes;
}

std::vector<SchemeLine> schemeLines(const std::vector<SchemeSet>& sets) {
    struct Scheme {
        std::string name;
        Values values;
        std::vector<std::string> first; ///< phrases for a scheme that has none of its own
    };
    std::vector<Scheme> schemes;
    std::map<std::string, std::size_t> places; // in schemes
    for (const SchemeSet& set : sets) {
        const std::string name = set.scheme.empty() ? set.className : set.scheme;
        const auto [place, isNew] = places.try_emplace(name, schemes.size());
        if (isNew) {
            schemes.push_back({name, {}, {}});
        }
        Scheme& scheme = schemes[place->second];
        for (const auto& field : set.fields) {
            scheme.values.try_emplace(Structural::itemOf(field.property.bytes()), &field.value);
            if (scheme.first.size() != fieldsShown) {
                scheme.first.push_back(field.name + " " + field.value);
            }
        }
    }
    std::vector<SchemeLine> lines;
    for (Scheme& scheme : schemes) {
        auto phrases = phrasesOf(scheme.values);
        lines.push_back({scheme.name, phrases.empty() ? std::move(scheme.first) : phrases});
    }
    return lines;
}

std::string fieldOf(const std::vector<SchemeSet>& sets, Types::u64 item) {
    for (const SchemeSet& set : sets) {
        for (const auto& field : set.fields) {
            if (Structural::itemOf(field.property.bytes()) == item) {
                return field.value;
            }
        }
    }
    return "";
}

} // namespace Corvid::Inspection
