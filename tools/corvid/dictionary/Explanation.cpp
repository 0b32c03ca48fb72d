#include "tools/corvid/dictionary/Explanation.h"

#include "host/base/NearNames.h"
#include "tools/corvid/dictionary/Explainer.h"

namespace Corvid::Tool {

Json explain(const Inspection::Glossary::Entry& entry, const Inspection::DefinitionUses& uses) {
    return Explainer(entry, uses).explain();
}

Json Explainer::explain() {
    std::visit(*this, entry_.subject);
    return std::move(json_);
}

void Explainer::begin(const char* kind) {
    json_["kind"] = kind;
    json_["name"] = entry_.names.front();
}

void Explainer::addDefinition(const MetaMetadata::MetaDefinition& definition) {
    json_["qualifiedName"] = entry_.qualifiedName;
    json_["namespace"] = Platform::toUtf8(definition.attribute("XMLNamespaceURI"));
}

void Explainer::addAliases() {
    Json aliases = Json::object();
    for (std::size_t i = 1; i < entry_.names.size(); ++i) {
        // "Sample Rate" is no other name than "SampleRate".
        if (Platform::folded(entry_.names[i]) != Platform::folded(entry_.names.front())) {
            aliases[entry_.names[i]] = "SMPTE registers";
        }
    }
    for (const MetaMetadata::RegisteredAlias& alias : MetaMetadata::Registers::aliases()) {
        if (alias.definition() == entry_.qualifiedName) {
            aliases[std::string(alias.name())] = std::string(alias.document());
        }
    }
    json_["alsoCalled"] = std::move(aliases);
}

} // namespace Corvid::Tool
