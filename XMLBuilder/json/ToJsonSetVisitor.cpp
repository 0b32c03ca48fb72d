#include "XMLBuilder/json/ToJsonSetVisitor.h"

#include "XMLBuilder/writer/PropertyOrder.h"
#include "host/base/Hex.h"
#include "host/dictionary/DefinitionNames.h"
#include "host/dictionary/MetaCollectionElement.h"
#include "host/dictionary/MetaMetadataSet.h"
#include "host/klv/BerOutput.h"
#include "host/metadata/Names.h"
#include "host/metadata/PartitionMetadata.h"
#include "host/metadata/SimpleValue.h"

#include <algorithm>

namespace Corvid::XMLBuilder {

namespace {

using Metadata::Element;
using Metadata::MetadataSet;
using Kind = MetaMetadata::AttributeFacts::Kind;

const MetaMetadata::AttributeFacts& factsOf(const Element& element) {
    return element.metaAttribute()->facts();
}

/// Nothing where there is no set, or where it has none.
std::optional<Types::UUID> identifierOf(const MetadataSet* set) {
    return set != nullptr && set->hasInstanceUID() ? std::optional(set->instanceUID())
                                                   : std::nullopt;
}

/// Whether the element is the one by which the set is known.
bool identifies(const MetadataSet& set, const Element& element) {
    return set.hasInstanceUID() &&
           Metadata::Structural::isInstanceUID(factsOf(element).definition->label());
}

std::string_view whyOther(const MetadataSet& set, const Element& element) {
    const auto& facts = factsOf(element);
    if (facts.definition == nullptr) {
        return facts.isUnfit ? "unfit" : "unknown";
    }
    const bool isOfClass = set.metaMetadataSet()->find(facts.definition->label()) != nullptr;
    return isOfClass ? "repeated" : "misplaced";
}

/// What people call a property that is kept as bytes; empty where nobody is known to.
std::string symbolOf(const MetaMetadata::Dictionary& dictionary,
                     const Types::UniversalLabel* label) {
    if (label == nullptr) {
        return {};
    }
    if (const auto* const definition = dictionary.findElement(*label)) {
        return MetaMetadata::tagName(*definition);
    }
    const auto registered = MetaMetadata::Registers::properties().find(*label);
    return registered ? std::string(registered->symbol()) : std::string();
}

std::string valueTypeOf(const MetaMetadata::MetaElement& definition) {
    const char* const type = Types::Identifiers::typeName(definition.dataType());
    if (!definition.isCollection()) {
        return type;
    }
    const auto& collection = static_cast<const MetaMetadata::MetaCollectionElement&>(definition);
    return std::string(type) + "(" + Types::Identifiers::typeName(collection.dataSubType()) + ")";
}

} // namespace

ToJsonSetVisitor::ToJsonSetVisitor(const DocumentPlan& plan, const JsonContent& content,
                                   JsonWriter& to)
    : plan_(plan), to_(to) {
    plain_.mostBytes = content.mostBytes;
    if (content.offsets != nullptr) {
        places_.emplace(plan.partition(), *content.offsets);
    }
}

const JsonValueManner& ToJsonSetVisitor::mannerOf(const Element& element) {
    const auto* const definition = factsOf(element).definition;
    if (definition == nullptr) {
        return plain_;
    }
    const auto [place, isNew] = manners_.try_emplace(definition, plain_);
    if (isNew) {
        place->second.enumeration = MetaMetadata::Registers::enumerationOf(definition->label());
    }
    return place->second;
}

void ToJsonSetVisitor::write(const MetadataSet& set, const WriterPass& pass) {
    pass_ = &pass;
    Properties all;
    listProperties(set, all);
    const auto firstOfClass = all.begin() + (set.invalidEnd() - set.invalidBegin());
    Properties properties;
    Properties others(all.begin(), firstOfClass);
    const MetaMetadata::MetaElement* last = nullptr;
    for (auto element = firstOfClass; element != all.end(); ++element) {
        const auto* const definition = factsOf(**element).definition;
        if (!identifies(set, **element)) {
            (definition == last ? others : properties).push_back(*element);
        }
        last = definition;
    }
    const auto withoutValue = [](const Element* element) { return element->isSkipped(); };
    for (Properties* const each : {&properties, &others}) {
        each->erase(std::remove_if(each->begin(), each->end(), withoutValue), each->end());
    }

    to_.beginObject();
    to_.member("class", MetaMetadata::tagName(*set.metaMetadataSet()));
    to_.identifierMember("id", identifierOf(&set));
    std::optional<SetBytes> bytes;
    if (places_) {
        bytes.emplace(set, plan_.partition().partitionDictionary());
        writePlace(&set, bytes->size());
    }
    writeProperties(set, properties);
    if (!others.empty()) {
        writeOthers(set, others);
    }
    if (bytes) {
        writeRaw(*bytes, properties, others);
    }
    to_.end();
}

void ToJsonSetVisitor::write(const DocumentPlan::Floating& dark) {
    to_.beginObject();
    to_.key("class");
    to_.null();
    to_.identifierMember("id", identifierOf(dark.group));
    to_.key("key");
    to_.identifier(dark.key->bytes().data(), dark.key->bytes().size());
    to_.memberOrNull("name",
                     MetaMetadata::Registers::nameOf(Types::UniversalLabel(dark.key->bytes())));
    if (places_) {
        const void* const set = dark.group != nullptr ? static_cast<const void*>(dark.group)
                                                      : static_cast<const void*>(dark.dark);
        writePlace(set, KLV::Key::length + KLV::berOctets(dark.value.size, dark.berLength) +
                            dark.value.size);
    }
    to_.numberMember("berLength", int{dark.berLength});
    writeHex(to_, dark.value, plain_.mostBytes);
    to_.end();
}

void ToJsonSetVisitor::writePlace(const void* set, std::size_t size) {
    to_.key("offset");
    if (const auto offset = places_->offsetOf(set)) {
        to_.number(*offset);
    } else {
        to_.null();
    }
    to_.numberMember("length", size);
}

void ToJsonSetVisitor::writeProperties(const MetadataSet& set, const Properties& properties) {
    to_.key("properties");
    to_.beginObject();
    for (const Element* const element : properties) {
        const auto& definition = *factsOf(*element).definition;
        const std::string& key = keys_.keyOf(*set.metaMetadataSet(), definition);
        if (places_) {
            noteDefinition(set, key, definition);
        }
        to_.key(key);
        element->accept(*this);
    }
    to_.end();
}

/// Classes may have different properties of one key; the later ones go by their class, too.
void ToJsonSetVisitor::noteDefinition(const MetadataSet& set, const std::string& key,
                                      const MetaMetadata::MetaElement& definition) {
    const auto [place, isNew] = used_.try_emplace(key, &definition);
    if (!isNew && place->second != &definition) {
        used_.try_emplace(Metadata::className(set) + "/" + key, &definition);
    }
}

void ToJsonSetVisitor::writeOthers(const MetadataSet& set, const Properties& others) {
    to_.key("other");
    to_.beginArray();
    for (const Element* const element : others) {
        writeOther(set, *element);
    }
    to_.end();
}

void ToJsonSetVisitor::writeOther(const MetadataSet& set, const Element& element) {
    const auto& facts = factsOf(element);
    const Metadata::PartitionDictionary& primer = plan_.partition().partitionDictionary();
    const Types::LocalTag tag(element.localTag() != 0 ? element.localTag() : facts.localTag);
    const Types::UniversalLabel* const label =
        facts.definition != nullptr ? &facts.definition->label() : primer.find(tag, true);
    to_.beginObject();
    to_.member("why", whyOther(set, element));
    to_.memberOrNull("property", facts.definition != nullptr
                                     ? MetaMetadata::tagName(*facts.definition)
                                     : symbolOf(*primer.dictionary(), label));
    to_.identifierMember("tag", tag.value() != 0 ? &tag : nullptr);
    to_.identifierMember("label", label);
    if (const auto* const bytes =
            facts.definition == nullptr ? Metadata::simpleValue(&element) : nullptr) {
        writeHex(to_, {bytes->rawBuffer(), bytes->byteCount()}, plain_.mostBytes);
    } else {
        to_.key("value");
        element.accept(*this);
    }
    to_.end();
}

/// One text for all properties: as objects they would take several times the memory of their bytes
/// in every reader.
void ToJsonSetVisitor::writeRaw(const SetBytes& bytes, const Properties& properties,
                                const Properties& others) {
    std::string text;
    for (const Properties* const each : {&properties, &others}) {
        for (const Element* const element : *each) {
            const SetBytes::Property& property = bytes.of(*element);
            const std::size_t shown = std::min(property.value.size, plain_.mostBytes);
            text += (text.empty() ? "" : ";") +
                    Hex::encoded<std::string>(property.tag.rawBuffer(), sizeof(Types::u16),
                                              Hex::lower) +
                    " " + std::to_string(property.offset) + " " +
                    std::to_string(property.value.size) + " " +
                    Hex::encoded<std::string>(property.value.data, shown, Hex::upper);
        }
    }
    to_.member("raw", text);
}

void ToJsonSetVisitor::visit(const Metadata::ReferenceElement& element) {
    writeItem(element, 0, *element.value());
}

void ToJsonSetVisitor::writeAll(const Metadata::ReferenceCollectionElement& element) {
    to_.beginArray();
    for (std::uint32_t i = 0; i != element.size(); ++i) {
        writeItem(element, i, element.at(i));
    }
    to_.end();
}

template <class OneOrMany> void ToJsonSetVisitor::writeValue(const OneOrMany& element) {
    ToJsonValueVisitor value(to_, mannerOf(element));
    element.value()->accept(value);
}

void ToJsonSetVisitor::writeItem(const Element& element, std::uint32_t item,
                                 const Types::Reference& reference) {
    const Metadata::Targets targets = plan_.partition().resolve(reference);
    if (plan_.manner().referencesAsValues && reference.isStrong() && !targets.empty() &&
        targets.front().metaMetadataSet() != nullptr &&
        pass_->leadsTo(targets.front(), element, item)) {
        return write(targets.front(), *pass_);
    }
    writeReference(reference.uuid(), targets.empty() ? nullptr : &targets.front(),
                   targets.size() > 1);
}

void ToJsonSetVisitor::writeReference(const Types::UUID& identifier, const MetadataSet* target,
                                      bool isAmbiguous) {
    to_.beginShortObject();
    to_.identifierMember("ref", &identifier);
    const auto* const definition = target == nullptr ? nullptr : target->metaMetadataSet();
    to_.memberOrNull("class", definition == nullptr ? "" : MetaMetadata::tagName(*definition));
    if (isAmbiguous) {
        to_.key("ambiguous");
        to_.boolean(true);
    }
    to_.end();
}

void ToJsonSetVisitor::writeDefinitions() {
    to_.key("definitions");
    to_.beginObject();
    for (const auto& [key, definition] : used_) {
        const auto registered = MetaMetadata::Registers::properties().find(definition->label());
        const auto type = registered ? registered->type() : std::nullopt;
        to_.key(key);
        to_.beginShortObject();
        to_.identifierMember("label", &definition->label());
        to_.memberOrNull("name", registered ? registered->name() : "");
        to_.memberOrNull("document", registered ? registered->document() : "");
        to_.memberOrNull("type", type ? type->symbol() : "");
        to_.member("valueType", valueTypeOf(*definition));
        to_.end();
    }
    to_.end();
}

} // namespace Corvid::XMLBuilder
