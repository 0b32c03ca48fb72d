#include "XMLBuilder/reader/Reading.h"

#include "XMLBuilder/format/InlineDepth.h"
#include "XMLBuilder/reader/FromXMLMetadataSetVisitor.h"
#include "XMLBuilder/reader/nodes/NodeText.h"
#include "host/base/Exceptions.h"
#include "host/metadata/PartitionMetadata.h"
#include "host/xmlutils/XmlText.h"

namespace Corvid::XMLBuilder {

namespace {

/// The front of a name: nobody needs more to find it, and it is read for each message.
std::string narrow(const char16_t* name) {
    constexpr std::size_t shown = 100;
    std::size_t length = 0;
    while (length != shown && name[length] != 0) {
        ++length;
    }
    return Platform::toUtf8(XMLUtils::fromXml(std::u16string(name, length).c_str()));
}

/// A message about a property without the property's name, which some have in front.
std::string withoutName(const std::string& message, const DocumentNode& property) {
    const std::string name = narrow(property.name) + ": ";
    return message.compare(0, name.size(), name) == 0 ? message.substr(name.size()) : message;
}

} // namespace

Reading::Reading(const DocumentNode& root, DomQueries* queries,
                 Metadata::PartitionMetadata& partition, InstanceNameTable* names,
                 Supplement* supplement, Strictness* strictness)
    : root_(root), queries_(queries), partition_(partition),
      dictionary_(partition.partitionDictionary().dictionary()),
      definitions_(namesOf(*dictionary_)), names_(names),
      tags_(partition.partitionDictionary(), queries), supplement_(supplement),
      strictness_(strictness), prefixesOfRoot_(root) {}

void Reading::leaveOut(const DocumentNode& element) const {
    if (supplement_ != nullptr) {
        supplement_->leaveOut(narrow(element.name), place_.inFrontOf(""));
    }
}

const MetaMetadata::MetaMetadataSet* Reading::findSet(const DocumentNode& element) const {
    return strictness_ == nullptr ? definitions_.findSet(element.local)
                                  : strictness_->findSet(element);
}

const MetaMetadata::MetaElement* Reading::findProperty(const DocumentNode& extension) const {
    if (strictness_ != nullptr) {
        return strictness_->findProperty(extension);
    }
    const std::u16string_view name = extension.name;
    const std::size_t colon = name.find(u':');
    if (colon == std::u16string_view::npos) {
        return definitions_.findProperty(u"", name);
    }
    const std::u16string declaration = u"xmlns:" + std::u16string(name.substr(0, colon));
    return definitions_.findProperty(attributeValue(root_, declaration), name.substr(colon + 1));
}

Metadata::MetadataSet& Reading::makeSet(const MetaMetadata::MetaMetadataSet& definition,
                                        const DocumentNode& element) {
    if (strictness_ == nullptr || attribute(element, Names::rp210, Names::instanceUID) == nullptr) {
        return partition_.createMetadataSet(definition.key());
    }
    auto& set = partition_.createEmptyMetadataSet(definition.key(), definition);
    set.holdWholeClass();
    return set;
}

bool Reading::isNamed(const DocumentNode& node, const Names::Namespace& names,
                      const char16_t* qualified) const {
    return strictness_ == nullptr ? node.name == std::u16string_view(qualified)
                                  : hasName(node, Names::localPart(qualified), names.uri);
}

const DocumentNode* Reading::attribute(const DocumentNode& element, const Names::Namespace& names,
                                       const char16_t* qualified) const {
    return strictness_ == nullptr ? findAttribute(element, qualified)
                                  : findAttribute(element, Names::localPart(qualified), names.uri);
}

std::u16string_view Reading::attributeText(const DocumentNode& element,
                                           const Names::Namespace& names,
                                           const char16_t* qualified) const {
    return textOf(attribute(element, names, qualified));
}

std::u16string_view Reading::textOf(const DocumentNode* attribute) const {
    const std::u16string_view text =
        attribute == nullptr ? std::u16string_view(u"") : attribute->value;
    return strictness_ == nullptr ? text : trimmed(text);
}

const char16_t* Reading::uriOfParts(const Names::Namespace& parts) {
    if (strictness_ != nullptr) {
        return parts.uri;
    }
    if (const char16_t* const uri = prefixesOfRoot_.uriOf(parts.prefix)) {
        return uri;
    }
    queries_->refusePrefix(root_, parts.prefix);
    return u"";
}

bool Reading::mustWait(const DocumentNode& extension) const {
    return queries_ == nullptr && !isComplete_ && strictness_->findProperty(extension) == nullptr &&
           attributeText(extension, Names::groups, Names::staticLocalTag).empty();
}

void Reading::wait(Metadata::MetadataSet& set, const DocumentNode& extension) {
    for (const DocumentNode* each = &extension; each != nullptr; each = nextElement(*each)) {
        tags_.keepTag(attributeText(*each, Names::groups, Names::staticLocalTag));
        waiting_.push_back({&set, &ofWaiting_.addCopy(*each)});
    }
}

void Reading::readWaiting() {
    isComplete_ = true;
    for (const Waiting& each : waiting_) {
        FromXMLMetadataSetVisitor reader(*each.extension->parent, *this);
        reader.readExtension(*each.set, *each.extension);
    }
}

void Reading::addMistake(const DocumentNode& node, const Exceptions::BaseException& error) {
    strictness_->mistakes().add(node, withoutName(Platform::toUtf8(error.message()), node));
}

std::string ReadingPlace::inFrontOf(const std::string& message) const {
    if (set == nullptr) {
        return message;
    }
    std::string whole = "set " + narrow(set->local);
    if (const char16_t* const identifier = attributeValue(*set, Names::instanceUID);
        *identifier != 0) {
        whole += " " + narrow(identifier);
    }
    whole += ": ";
    return property == nullptr
               ? whole + message
               : whole + narrow(property->name) + ": " + withoutName(message, *property);
}

OpenSet::OpenSet(Reading& reading, const DocumentNode& element)
    : reading_(reading), outer_(reading.innermost_),
      depth_(outer_ == nullptr ? 0 : outer_->depth_ + 1),
      prefixes_(element, outer_ == nullptr ? reading.prefixesOfRoot_ : outer_->prefixes_) {
    if (depth_ == greatestInlineDepth) {
        throw Exceptions::LimitExceeded(
            "element " + Platform::toUtf8(XMLUtils::fromXml(element.name)) +
                ": sets are nested deeper than " + std::to_string(greatestInlineDepth) +
                ", write the references as links instead",
            CORVID_HERE);
    }
    if (reading.children_.size() == depth_) {
        reading.children_.emplace_back();
    }
    children_ = &reading.children_[depth_];
    children_->reset(element);
    reading.innermost_ = this;
}

} // namespace Corvid::XMLBuilder
