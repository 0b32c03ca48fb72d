#include "inspection/LabelText.h"
#include "inspection/RegisteredName.h"
#include "tools/corvid/dictionary/Explainer.h"

#include <algorithm>

namespace Corvid::Tool {

using namespace MetaMetadata;

void Explainer::addRegisteredType(const std::optional<RegisteredType>& type) {
    json_["registeredType"] = symbolOf(type);
    if (type && !type->members().empty() && type->kind() != "record") {
        addMembers("values", *type);
    }
}

void Explainer::addMembers(const char* key, const RegisteredType& type) {
    Json members = Json::array();
    for (const RegisteredMember& member : type.members()) {
        const auto label = Inspection::parseLabel(member.value());
        const auto registered = label ? Registers::labels().find(*label) : std::nullopt;
        members.push_back(
            {{"member", std::string(member.symbol())},
             {type.kind() == "record" ? "type" : "value", std::string(member.value())},
             {"name", registered ? orNull(registered->name()) : Json(nullptr)},
             {"deprecated", member.isDeprecated() ? Json(true) : Json(nullptr)}});
    }
    json_[key] = std::move(members);
}

void Explainer::addGroupsWith(const RegisteredProperty& property) {
    Json groups = Json::array();
    for (const RegisteredGroup& group : Registers::groups()) {
        for (const RegisteredUse& use : group.uses()) {
            if (use.property().label() == property.label()) {
                groups.push_back({{"group", std::string(group.symbol())},
                                  {"localTag", dotted(use.localTag())},
                                  {"status", use.isOptional() ? "optional" : "required"}});
            }
        }
    }
    json_["otherGroups"] = std::move(groups);
}

void Explainer::operator()(const RegisteredType& type) {
    begin("type");
    json_["label"] = dotted(type.label());
    json_["typeKind"] = std::string(type.kind());
    json_["base"] = symbolOf(type.base());
    json_["target"] = symbolOf(type.target());
    json_["targetPath"] = orNull(type.targetPath());
    json_[type.kind() == "fixed-array" ? "items" : "bytes"] =
        type.size() == 0 ? Json(nullptr) : Json(type.size());
    json_["valueType"] = orNull(type.valueType());
    addSource(type);
    Json users = Json::array();
    for (const RegisteredProperty& property : Registers::properties()) {
        if (property.type() && property.type()->label() == type.label()) {
            users.push_back(std::string(property.symbol()));
        }
    }
    json_["properties"] = std::move(users);
    addMembers("members", type);
}

void Explainer::operator()(const RegisteredLabel& label) {
    begin("label");
    json_["symbol"] = std::string(label.symbol());
    json_["label"] = dotted(label.label());
    json_["register"] = Inspection::branchesOf(label.label());
    addSource(label);
    Json members = Json::array();
    for (const RegisteredType& type : Registers::types()) {
        for (const RegisteredMember& member : type.members()) {
            const auto value = Inspection::parseLabel(member.value());
            if (value && value->withoutVersion() == label.label().withoutVersion()) {
                members.push_back({{"member", std::string(member.symbol())},
                                   {"type", std::string(type.symbol())}});
            }
        }
    }
    json_["members"] = std::move(members);
}

void Explainer::operator()(const Inspection::TypeMember& member) {
    begin("member");
    json_["of"] = std::string(member.type.symbol());
    json_["typeKind"] = std::string(member.type.kind());
    json_[member.type.kind() == "record" ? "type" : "value"] = std::string(member.member.value());
    json_["valueType"] = orNull(member.type.valueType());
    json_["deprecated"] = member.member.isDeprecated();
    if (const auto label = Inspection::parseLabel(member.member.value())) {
        const auto registered = Registers::labels().find(*label);
        json_["label"] = registered ? orNull(registered->name()) : Json(nullptr);
    }
}

void Explainer::operator()(const RegisteredProperty& property) {
    begin("property");
    addAliases();
    json_["label"] = dotted(property.label());
    addRegisteredType(property.type());
    addSource(property);
    json_["headerMetadata"] = false;
    addGroupsWith(property);
    json_["reason"] = json_["otherGroups"].empty() ? Json("No group of the registers has it")
                                                   : Json("Only other groups have it");
}

void Explainer::operator()(const RegisteredGroup& group) {
    begin("group");
    addAliases();
    json_["key"] =
        group.codings().empty() ? Json(nullptr) : dotted(*Inspection::labelOf(entry_.subject));
    json_["codings"] = orNull(group.codings());
    json_["concrete"] = group.isConcrete();
    Json chain = Json::array();
    for (auto ancestor = group.parent(); ancestor; ancestor = ancestor->parent()) {
        chain.push_back(std::string(ancestor->symbol()));
    }
    json_["inherits"] = std::move(chain);
    addSource(group);
    json_["headerMetadata"] = false;
    json_["reason"] = orNull(group.reason());
    std::vector<RegisteredGroup> line{group};
    while (const auto parent = line.back().parent()) {
        line.push_back(*parent);
    }
    Json properties = Json::array();
    std::for_each(line.rbegin(), line.rend(), [&properties](const RegisteredGroup& each) {
        for (const RegisteredUse& use : each.uses()) {
            properties.push_back({{"property", std::string(use.property().symbol())},
                                  {"localTag", dotted(use.localTag())},
                                  {"type", symbolOf(use.property().type())},
                                  {"status", use.isOptional() ? "optional" : "required"},
                                  {"of", std::string(each.symbol())},
                                  {"label", dotted(use.property().label())}});
        }
    });
    json_["properties"] = std::move(properties);
}

} // namespace Corvid::Tool
