#pragma once

#include "host/base/Text.h"
#include "inspection/DefinitionUses.h"
#include "inspection/Glossary.h"

#include <nlohmann/json.hpp>

namespace Corvid::Tool {

using Json = nlohmann::ordered_json;

inline Json orNull(std::string_view text) {
    return text.empty() ? Json(nullptr) : Json(std::string(text));
}

inline Json dotted(const Types::UniversalLabel& label) {
    return Platform::toUtf8(label.toString());
}

/// Null for 0, which means none.
inline Json dotted(Types::u16 localTag) {
    return localTag == 0 ? Json(nullptr)
                         : Json(Platform::toUtf8(Types::LocalTag(localTag).toString()));
}

template <class Entry> Json symbolOf(const std::optional<Entry>& entry) {
    return entry ? orNull(entry->symbol()) : Json(nullptr);
}

/// Builds the explanation of one entry.
class Explainer {
public:
    Explainer(const Inspection::Glossary::Entry& entry, const Inspection::DefinitionUses& uses)
        : entry_(entry), uses_(uses) {}

    Json explain();

    // ExplainDefinitions.cpp
    void operator()(const MetaMetadata::MetaMetadataSet* set);
    void operator()(const MetaMetadata::MetaElement* element);
    // ExplainRegisters.cpp
    void operator()(const MetaMetadata::RegisteredType& type);
    void operator()(const MetaMetadata::RegisteredLabel& label);
    void operator()(const Inspection::TypeMember& member);
    void operator()(const MetaMetadata::RegisteredProperty& property);
    void operator()(const MetaMetadata::RegisteredGroup& group);

private:
    void begin(const char* kind);
    /// The name and namespace in documents.
    void addDefinition(const MetaMetadata::MetaDefinition& definition);
    void addAliases();
    void addRegisteredType(const std::optional<MetaMetadata::RegisteredType>& type);
    void addMembers(const char* key, const MetaMetadata::RegisteredType& type);
    /// The groups that have a property and are no header metadata.
    void addGroupsWith(const MetaMetadata::RegisteredProperty& property);

    template <class Entry> void addSource(const Entry& entry) {
        if (!entry.isRegistered()) {
            json_["notRegistered"] = std::string(entry.owner());
        }
        json_["document"] = orNull(entry.document());
        json_["deprecated"] = entry.isDeprecated();
    }

    const Inspection::Glossary::Entry& entry_;
    const Inspection::DefinitionUses& uses_;
    Json json_ = Json::object();
};

} // namespace Corvid::Tool
