#include "XMLBuilder/writer/NamespaceMap.h"

#include "host/dictionary/MetaDefinition.h"
#include "host/xmlutils/XmlText.h"

#include <algorithm>

namespace Corvid::XMLBuilder {

namespace {

NamespaceMap::NodeName makeName(const MetaMetadata::MetaDefinition& definition,
                                const XMLCh* suffix) {
    NamespaceMap::NodeName name;
    name.prefix = XMLUtils::toXml(definition.attribute("XMLDefaultPrefix"));
    name.uri = XMLUtils::toXml(definition.attribute("XMLNamespaceURI"));
    name.qualified = name.prefix;
    name.qualified += u':';
    name.qualified += XMLUtils::toXml(definition.attribute("XMLTagName"));
    name.qualified += suffix;
    name.identifies =
        name.qualified == Names::instanceUID || name.qualified == Names::generationUID;
    return name;
}

} // namespace

NamespaceMap::NamespaceMap() { insert(Names::s377m); }

void NamespaceMap::insertUnlessPrefixInUse(const Names::Namespace& names) {
    if (uriOf(names.prefix).empty()) {
        insert(names);
    }
}

void NamespaceMap::insertValueNamespaces() {
    if (!hasValueNamespaces_) {
        insertUnlessPrefixInUse(Names::types);
        insertUnlessPrefixInUse(Names::s422mTypes);
        hasValueNamespaces_ = true;
    }
}

std::u16string_view NamespaceMap::uriOf(const XMLCh* prefix) const {
    const auto entry = std::find_if(entries_.begin(), entries_.end(),
                                    [prefix](const auto& e) { return e.second == prefix; });
    return entry == entries_.end() ? std::u16string_view(u"") : entry->first;
}

const NamespaceMap::NodeName& NamespaceMap::nameOf(const MetaMetadata::MetaDefinition& definition) {
    const auto known = names_.find(&definition);
    if (known != names_.end()) {
        return known->second;
    }
    const NodeName& name = names_.emplace(&definition, makeName(definition, u"")).first->second;
    insert(name.uri, name.prefix);
    return name;
}

const NamespaceMap::NodeName& NamespaceMap::linkNameOf(
    const MetaMetadata::MetaDefinition& definition) {
    const auto known = linkNames_.find(&definition);
    if (known != linkNames_.end()) {
        return known->second;
    }
    return linkNames_.emplace(&definition, makeName(definition, Names::linkSuffix)).first->second;
}

} // namespace Corvid::XMLBuilder
