#include "editing/supplement/ApplySupplement.h"

#include "XMLBuilder/format/HexBytes.h"
#include "editing/StoredBytes.h"
#include "editing/supplement/Filling.h"
#include "editing/supplement/ListedElements.h"
#include "editing/supplement/RestoreBytes.h"
#include "host/base/Exceptions.h"
#include "host/dictionary/MetaMetadataSet.h"
#include "host/metadata/Names.h"

#include <algorithm>

namespace Corvid::Editing {

namespace {

using Metadata::Element;
using Metadata::MetadataSet;
using XMLBuilder::identityOf;
using XMLBuilder::PropertyIdentity;

/// How often a document has a set: in the tree of the Preface, and with the sets outside of it that
/// share it. What is said of more would make a document grow with each of them.
constexpr Types::u32 mostTimesWritten = 2;

class Clear : public Metadata::Visitors::NonConstElementVisitor {
public:
    void visit(Metadata::SimpleElement& element) override { element.set({}); }
    void visit(Metadata::ReferenceElement&) override {}
    void visit(Metadata::ReferenceBatchElement&) override {}
    void visit(Metadata::ReferenceArrayElement&) override {}
    void visit(Metadata::BatchElement&) override {}
    void visit(Metadata::ArrayElement&) override {}
};

} // namespace

SupplementReader::SupplementReader(const DocumentSupplement& supplement) : supplement_(supplement) {
    for (const auto& form : supplement.forms) {
        add({&form, nullptr});
    }
    for (const auto& bytes : supplement.bytes) {
        add({nullptr, &bytes});
    }
    for (const auto& key : supplement.setKeys) {
        sayingsOf(key.set).groups[key.set.copy].key = &key;
    }
    for (const auto& [setClass, count] : supplement.unidentified) {
        unidentified_[setClass.forMatching()] = count;
    }
    const auto inOrder = [](const Saying& a, const Saying& b) {
        return a.address().nth < b.address().nth;
    };
    const auto sort = [&](auto& all) {
        for (auto& [address, sayings] : all) {
            for (auto& [copy, group] : sayings.groups) {
                for (auto& [property, list] : group.byProperty) {
                    std::stable_sort(list.begin(), list.end(), inOrder);
                }
            }
        }
    };
    sort(ofSets_);
    sort(ofUnidentified_);
}

SupplementReader::Sayings& SupplementReader::sayingsOf(const SetAddress& address) {
    return address.instanceUID ? ofSets_[*address.instanceUID]
                               : ofUnidentified_[address.setClass.forMatching()];
}

void SupplementReader::add(const Saying& saying) {
    Sayings& sayings = sayingsOf(saying.address().set);
    const PropertyIdentity property = saying.address().identity();
    sayings.properties.insert(property);
    sayings.groups[saying.address().set.copy].byProperty[property].push_back(saying);
}

void SupplementReader::explainTags(Metadata::PartitionDictionary& primer) const {
    for (const auto& [tag, label] : supplement_.primer) {
        primer.add(tag, label);
    }
}

void SupplementReader::leaveOut(const std::string& name, const std::string& place) {
    auto& leftOut = outcome_.leftOut[name];
    if (++leftOut.count == 1) {
        leftOut.firstPlace = place;
    }
}

bool SupplementReader::mayBeNameless(const MetaMetadata::MetaMetadataSet& setClass) const {
    const auto left = unidentified_.find(setClass.key().forMatching());
    return left != unidentified_.end() && left->second != 0;
}

const XMLBuilder::Supplement::Properties* SupplementReader::enter(MetadataSet& set,
                                                                  std::u16string_view written) {
    Sayings* sayings = nullptr;
    if (written.empty()) {
        const ClassKey setClass = set.metaMetadataSet()->key().forMatching();
        if (const auto left = unidentified_.find(setClass);
            left != unidentified_.end() && left->second != 0) {
            --left->second;
            nameless_.push_back(&set);
        }
        const auto found = ofUnidentified_.find(setClass);
        sayings = found == ofUnidentified_.end() ? nullptr : &found->second;
    } else if (!ofSets_.empty()) {
        // Another name becomes a new identifier.
        const auto identifier = XMLBuilder::parseUuid(written);
        const auto found = identifier ? ofSets_.find(*identifier) : ofSets_.end();
        sayings = found == ofSets_.end() ? nullptr : &found->second;
    }
    if (sayings == nullptr) {
        return nullptr;
    }
    met_.push_back({&set, sayings, sayings->met++});
    return &sayings->properties;
}

SupplementOutcome SupplementReader::apply(Metadata::PartitionMetadata& metadata) {
    tags_ = &metadata.partitionDictionary();
    applyClassKeys(metadata);
    // Before what is said is applied: identifiers that the file does not have are nobody's value.
    Clear clear;
    for (MetadataSet* set : nameless_) {
        set->find(Metadata::Structural::StructuralMetadataULs::instanceUID())->accept(clear);
    }
    for (const Met& met : met_) {
        applyToSet(met);
    }
    if (supplement_.textsAreTerminated) {
        terminateTexts(metadata);
    }
    const auto countMissing = [this](const auto& all) {
        for (const auto& [address, sayings] : all) {
            const auto met = sayings.met;
            outcome_.missingSets += static_cast<std::size_t>(std::count_if(
                sayings.groups.begin(), sayings.groups.end(),
                [met](const auto& group) { return group.first ? *group.first >= met : met == 0; }));
        }
    };
    countMissing(ofSets_);
    countMissing(ofUnidentified_);
    for (const auto& copies : supplement_.copies) {
        outcome_.missingSets += metadata.resolve(copies.set).empty() ? 1 : 0;
    }
    for (const auto& [setClass, left] : unidentified_) {
        outcome_.missingSets += left;
    }
    return std::move(outcome_);
}

void SupplementReader::applyClassKeys(Metadata::PartitionMetadata& metadata) {
    std::map<ClassKey, KeyForm> keys;
    for (const auto& [setClass, form] : supplement_.classKeys) {
        keys[setClass.forMatching()] = form;
    }
    if (keys.empty()) {
        return;
    }
    for (MetadataSet* set : metadata) {
        const auto* const definition = set->metaMetadataSet();
        const auto key = keys.find(definition->key().forMatching());
        if (key != keys.end()) {
            giveKey(*set, key->second);
        }
    }
}

void SupplementReader::giveKey(MetadataSet& set, const KeyForm& form) {
    if (KLV::matches(form.key, set.key())) {
        set.setKey(form.key);
        set.setPropertyBerLength(form.propertyBerLength);
    } else {
        overrule(set, "key " + Platform::toUtf8(form.key.toString()));
    }
}

void SupplementReader::overrule(const MetadataSet& set, const std::string& what) {
    constexpr std::size_t listed = 8;
    if (++outcome_.overruled <= listed) {
        outcome_.firstOverruled.push_back("set " + className(set) + " " +
                                          Platform::toUtf8(set.instanceUID().toString()) + ": " +
                                          what);
    }
}

void SupplementReader::applyToSet(const Met& met) {
    for (const auto& copy : {std::optional<Types::u32>(), std::make_optional(met.copy)}) {
        const auto group = met.sayings->groups.find(copy);
        const bool isMeant = copy || met.copy < mostTimesWritten;
        if (group != met.sayings->groups.end() && isMeant) {
            applyGroup(*met.set, met.sayings->properties, group->second);
        }
    }
    clearEmptyValues(*met.set, met.sayings->properties);
}

/// Without further word, an empty element is no value; also where the word is about another set
/// with that address.
void SupplementReader::clearEmptyValues(MetadataSet& set, const Properties& properties) {
    std::vector<Element*> empty;
    forEachElement(set, [&](Element& element) {
        if (element.serializedSize() == 0 && restored_.count(&element) == 0 &&
            properties.count(identityOf(*element.metaAttribute(), *tags_)) != 0) {
            empty.push_back(&element);
        }
    });
    Clear clear;
    for (Element* const element : empty) {
        element->accept(clear);
    }
}

void SupplementReader::applyGroup(MetadataSet& set, const Properties& properties,
                                  const Group& group) {
    if (group.key != nullptr) {
        giveKey(set, group.key->form);
    }
    std::map<PropertyIdentity, Elements> present;
    forEachElement(set, [&](Element& element) {
        const auto property = identityOf(*element.metaAttribute(), *tags_);
        if (properties.count(property) != 0) {
            present[property].push_back(&element);
        }
    });
    Elements order;
    for (const auto& [property, sayings] : group.byProperty) {
        const Elements repetitions = applyToProperty(set, present[property], sayings);
        order.insert(order.end(), repetitions.begin(), repetitions.end());
    }
    set.arrange(order);
}

/// @return the elements of the property as they followed one another in the file, where those that
///         the document does not hold were not the last; else nothing.
SupplementReader::Elements SupplementReader::applyToProperty(MetadataSet& set,
                                                             const Elements& present,
                                                             const std::vector<Saying>& sayings) {
    Elements order;
    auto next = present.begin();
    const auto pass = [&](std::size_t count) {
        const auto end = next + std::min(static_cast<std::ptrdiff_t>(count), present.end() - next);
        order.insert(order.end(), next, end);
        next = end;
    };
    bool insertedBeforeOthers = false;
    Types::u32 nth = 0;
    for (const Saying& saying : sayings) {
        // Those of which nothing is said come in between.
        pass(saying.address().nth - std::min(saying.address().nth, nth));
        nth = saying.address().nth + 1;
        Element* const element = next == present.end() ? nullptr : *next;
        if (saying.form != nullptr) {
            if (element != nullptr) {
                if (element->serializedSize() != 0) {
                    fillUp(*element, saying.form->size);
                }
                settled_.insert(element);
                pass(1);
            }
        } else if (element != nullptr && restoreBytes(*element, saying.bytes->bytes)) {
            settled_.insert(element);
            restored_.insert(element);
            pass(1);
        } else if (Element* const inserted =
                       insertBytes(set, *saying.bytes, *tags_->dictionary())) {
            restored_.insert(inserted);
            order.push_back(inserted);
            insertedBeforeOthers |= element != nullptr;
        } else {
            overrule(set,
                     "property " + Platform::toUtf8(saying.bytes->property.label
                                                        ? saying.bytes->property.label->toString()
                                                        : saying.bytes->property.tag.toString(
                                                              Types::dottedHexadecimal)));
            pass(1);
        }
    }
    if (!insertedBeforeOthers) {
        return {};
    }
    pass(present.size());
    return order;
}

void SupplementReader::terminateTexts(Metadata::PartitionMetadata& metadata) {
    for (MetadataSet* set : metadata) {
        forEachElement(*set, [this](Element& element) {
            const std::size_t terminator = terminatorSize(element);
            if (terminator != 0 && settled_.count(&element) == 0) {
                fillUp(element, element.serializedSize() + terminator);
            }
        });
    }
}

} // namespace Corvid::Editing
