#include "XMLBuilder/reader/strict/Strictness.h"

#include "XMLBuilder/format/DefinitionName.h"
#include "XMLBuilder/format/HexBytes.h"
#include "XMLBuilder/format/Namespaces.h"
#include "XMLBuilder/reader/nodes/NodeText.h"
#include "XMLBuilder/reader/strict/ValueRules.h"
#include "host/base/NearNames.h"
#include "host/base/Text.h"
#include "host/dictionary/MetaElement.h"
#include "host/dictionary/MetaMetadataSet.h"
#include "host/metadata/PartitionMetadata.h"

#include <algorithm>

namespace Corvid::XMLBuilder {

namespace {

std::u16string_view uriOf(const DocumentNode& node) { return node.uri == nullptr ? u"" : node.uri; }

/// Whether an element is inside the property of a set; a set may also be in the container of
/// floating ones, directly in the root.
bool isInSet(const DocumentNode& element) {
    const DocumentNode* const property = element.parent;
    const DocumentNode* const set = property == nullptr ? nullptr : property->parent;
    return set != nullptr && set->parent != nullptr;
}

} // namespace

Strictness::Strictness(const MetaMetadata::Dictionary& dictionary, const Supplement* supplement,
                       Mistakes& mistakes)
    : dictionary_(dictionary), definitions_(namesOf(dictionary)), supplement_(supplement),
      mistakes_(mistakes) {}

const MetaMetadata::MetaMetadataSet* Strictness::findSet(const DocumentNode& element) const {
    return definitions_.findSet(uriOf(element), element.local);
}

const MetaMetadata::MetaElement* Strictness::findProperty(const DocumentNode& element) const {
    return definitions_.findProperty(uriOf(element), element.local);
}

void Strictness::checkRoot(const DocumentNode& root) {
    if (!hasName(root, Names::localPart(Names::root), Names::s377m.uri)) {
        mistakes_.add(root, "is no root of a document of metadata, expected " +
                                narrow(Names::root) + " in the namespace " +
                                narrow(Names::s377m.uri));
    }
    checkAttributes(root, nullptr, {});
}

void Strictness::refuseStrayText(const DocumentNode& text) {
    if (const auto words = trimmed(text.value); !words.empty()) {
        mistakes_.add(text, "has text " + quoted(words) + " between sets, expected none");
    }
}

/// What else the name could mean: another namespace, or a name like it.
std::string Strictness::nearest(const DocumentNode& element, bool isSet) const {
    Platform::NearNames near(narrow(std::u16string_view(element.local).substr(0, 256)));
    std::string elsewhere;
    const auto offer = [&](const DefinitionName& name) {
        if (name.local.text == std::u16string_view(element.local) &&
            name.names.uri != uriOf(element)) {
            elsewhere = narrow(name.names.uri);
        } else {
            near.offer(narrow(name.local.text));
        }
    };
    if (isSet) {
        std::for_each(dictionary_.metaMetadataSetBegin(), dictionary_.metaMetadataSetEnd(),
                      [&](const auto* set) { offer(nameOf(*set)); });
    } else {
        std::for_each(dictionary_.metaElementBegin(), dictionary_.metaElementEnd(),
                      [&](const auto* property) { offer(nameOf(*property)); });
    }
    if (!elsewhere.empty()) {
        return "; that name is in the namespace " + elsewhere + ", here it is in " +
               (element.uri == nullptr || *element.uri == 0 ? "none" : quoted(element.uri));
    }
    const auto best = near.best();
    return best.empty() ? "" : "; the nearest is " + best.front();
}

void Strictness::refuseSet(const DocumentNode& element) {
    if (mistakes_.count() < Mistakes::mostKept) {
        mistakes_.add(element, "is no set that the dictionary knows" + nearest(element, true));
    } else {
        mistakes_.add({});
    }
}

void Strictness::refuseProperty(const DocumentNode& element,
                                const MetaMetadata::MetaMetadataSet& setClass) {
    if (mistakes_.count() >= Mistakes::mostKept) {
        mistakes_.add({});
        return;
    }
    const auto* const property = findProperty(element);
    if (property == nullptr) {
        mistakes_.add(element,
                      "is no property that the dictionary knows" + nearest(element, false));
    } else if (setClass.find(property->label()) == nullptr) {
        mistakes_.add(element, "is no property of " + narrow(nameOf(setClass).qualified) +
                                   "; what a file has beyond its class is in " +
                                   narrow(Names::extensionElements));
    } else if (nameOf(*property).isWrittenAsAttribute) {
        mistakes_.add(element, "is an attribute of its set, expected no element");
    } else {
        mistakes_.add(element, "is in its set more than once, expected once");
    }
}

bool Strictness::checkExtension(const DocumentNode& element,
                                const MetaMetadata::MetaElement* definition) {
    if (definition != nullptr) {
        checkAttributes(element, nullptr, {});
        return true;
    }
    if (hasName(element, Names::localPart(Names::darkElement), Names::groups.uri)) {
        return checkDarkElement(element);
    }
    if (mistakes_.count() < Mistakes::mostKept) {
        mistakes_.add(element, "is neither a property that the dictionary knows nor " +
                                   narrow(Names::darkElement) + nearest(element, false));
    } else {
        mistakes_.add({});
    }
    return false;
}

/// What identifies the property of a dark element: its tag, or else its label.
bool Strictness::checkDarkElement(const DocumentNode& element) {
    const char16_t* const tagName = Names::localPart(Names::staticLocalTag);
    const char16_t* const labelName = Names::localPart(Names::universalLabel);
    checkAttributes(element, Names::groups.uri, {tagName, labelName});
    const auto* const tag = findAttribute(element, tagName, Names::groups.uri);
    const auto* const label = findAttribute(element, labelName, Names::groups.uri);
    if ((tag == nullptr) == (label == nullptr)) {
        mistakes_.add(element, (tag == nullptr ? "has neither " : "has both ") +
                                   narrow(Names::staticLocalTag) +
                                   (tag == nullptr ? " nor " : " and ") +
                                   narrow(Names::universalLabel) + ", expected one of them");
        return false;
    }
    return tag != nullptr
               ? hasRightForm(Types::Identifiers::LocalTag, *tag, EmptyParts::missing, mistakes_)
               : hasRightForm(Types::Identifiers::UniversalLabel, *label, EmptyParts::missing,
                              mistakes_);
}

void Strictness::checkAttributes(const DocumentNode& element, const char16_t* uri,
                                 std::initializer_list<const char16_t*> locals) {
    XMLBuilder::checkAttributes(element, uri, locals, mistakes_);
}

std::optional<Types::UUID> Strictness::enterSet(const DocumentNode& element,
                                                const MetaMetadata::MetaMetadataSet& setClass,
                                                const DocumentNode* identifier) {
    refuseText(element, mistakes_);
    hasSetsAsValues_ = hasSetsAsValues_ || isInSet(element);
    if (identifier == nullptr) {
        if (supplement_ == nullptr || !supplement_->mayBeNameless(setClass)) {
            mistakes_.add(element, "has no " + narrow(Names::instanceUID) + ", expected one");
        }
        return std::nullopt;
    }
    auto parsed = parseUuid(trimmed(identifier->value));
    if (parsed) {
        named_.push_back({*parsed, element.line, element.column});
    } else {
        mistakes_.add(*identifier, quoted(identifier->value) +
                                       ", expected 16 pairs of hexadecimal digits with full stops "
                                       "between them");
    }
    return parsed;
}

bool Strictness::isKnownLink(const DocumentNode& link) {
    if (link.local != knownLocal_ || link.uri != knownUri_) {
        if (!hasNameOfLink(link)) {
            return false;
        }
        knownLocal_ = link.local;
        knownUri_ = link.uri;
    }
    return true;
}

/// Whether a link has a name that a link can have.
bool Strictness::hasNameOfLink(const DocumentNode& link) const {
    const std::u16string_view local = link.local;
    const std::u16string_view suffix = Names::linkSuffix;
    if (local == Names::ambiguousLink) {
        return definitions_.hasSetsIn(uriOf(link));
    }
    if (local.size() <= suffix.size()) {
        return false;
    }
    const std::size_t size = local.size() - suffix.size();
    return local.substr(size) == suffix &&
           definitions_.findSet(uriOf(link), local.substr(0, size)) != nullptr;
}

std::optional<Types::UUID> Strictness::targetOf(const DocumentNode& link) {
    // Where a dictionary has the prefix for another namespace, to-xml writes the link with that.
    const bool isDangling =
        hasName(link, Names::localPart(Names::danglingLink), Names::s377m.uri) ||
        link.name == std::u16string_view(Names::danglingLink);
    if (!isDangling && !isKnownLink(link)) {
        refuseSet(link);
        return std::nullopt;
    }
    checkAttributes(link, Names::types.uri, {Names::localPart(Names::targetInstance)});
    refuseText(link, mistakes_);
    if (const auto* const child = firstElement(link)) {
        mistakes_.add(*child, "is in a link, expected nothing there");
    }
    const auto* const attribute =
        findAttribute(link, Names::localPart(Names::targetInstance), Names::types.uri);
    if (attribute == nullptr) {
        mistakes_.add(link, "has no " + narrow(Names::targetInstance) + ", expected one");
        return std::nullopt;
    }
    auto identifier = parseUuid(trimmed(attribute->value));
    if (!identifier) {
        mistakes_.add(*attribute, quoted(attribute->value) +
                                      ", expected 16 pairs of hexadecimal digits with full stops "
                                      "between them");
        return std::nullopt;
    }
    if (!isDangling) {
        const auto nameOf = [](const DocumentNode* node) {
            return node == nullptr ? u"" : node->name;
        };
        const DocumentNode* const property = link.parent;
        const DocumentNode* const set = property == nullptr ? nullptr : property->parent;
        links_.push_back(
            {*identifier, link.line, link.column, nameOf(set), nameOf(property), link.name});
    }
    return identifier;
}

void Strictness::finish(const Metadata::PartitionMetadata& partition) {
    if (supplement_ != nullptr && supplement_->isPartial()) {
        return; // what is left out may be a target
    }
    for (const Link& link : links_) {
        if (partition.resolve(link.target).empty()) {
            mistakes_.add({link.line, link.column,
                           narrow(link.set) + "/" + narrow(link.property) + "/" +
                               narrow(link.name) +
                               ": no set of the document has this identifier; a link to nothing "
                               "is called " +
                               narrow(Names::danglingLink)});
        }
    }
}

Mistakes::Entry Strictness::placeOf(const Types::UUID& identifier, std::size_t nth) {
    if (!isSorted_) {
        std::stable_sort(named_.begin(), named_.end(), [](const Named& a, const Named& b) {
            return a.identifier < b.identifier;
        });
        isSorted_ = true;
    }
    const auto found =
        std::lower_bound(named_.begin(), named_.end(), identifier,
                         [](const Named& a, const Types::UUID& b) { return a.identifier < b; });
    const auto left = static_cast<std::size_t>(named_.end() - found);
    const auto place = found + static_cast<std::ptrdiff_t>(std::min(nth, left));
    return place == named_.end() || place->identifier != identifier
               ? Mistakes::Entry{}
               : Mistakes::Entry{place->line, place->column, ""};
}

} // namespace Corvid::XMLBuilder
