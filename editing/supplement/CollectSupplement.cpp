#include "editing/supplement/CollectSupplement.h"

#include "editing/StoredBytes.h"
#include "editing/supplement/CopyNumbers.h"
#include "editing/supplement/Filling.h"
#include "editing/supplement/ListedElements.h"
#include "editing/supplement/ToldValue.h"
#include "host/dictionary/MetaCollectionElement.h"
#include "host/dictionary/MetaMetadataSet.h"
#include "host/metadata/Elements.h"
#include "host/metadata/PartitionMetadata.h"
#include "host/metadata/SimpleValue.h"
#include "host/mxf/LocalSet.h"
#include "host/types/Types.h"

#include <algorithm>
#include <bitset>
#include <map>
#include <set>

namespace Corvid::Editing {

namespace {

using Form = DocumentSupplement::Form;
using Metadata::Element;
using Metadata::MetadataSet;
using XMLBuilder::EmptyParts;
using XMLBuilder::identityOf;

/// False for a value that comes back from a document whatever it is: most are numbers and
/// identifiers.
bool mayNeedMore(const Element& element) {
    using namespace Types::Identifiers;
    const auto* const definition = element.definition();
    if (definition == nullptr) {
        return element.serializedSize() == 0;
    }
    constexpr std::size_t collectionHead = 8;
    if (definition->isCollection() && element.serializedSize() == collectionHead) {
        return true;
    }
    const auto type =
        definition->isCollection()
            ? static_cast<const MetaMetadata::MetaCollectionElement*>(definition)->dataSubType()
            : definition->dataType();
    return typeSize(type) == 0 || type == UTF16 || type == LocalTag || type == ProductVersion;
}

/// The bytes of a text's value after the text itself.
std::size_t zerosAfter(const Element& text) {
    struct Length : Types::Visitors::NullVisitor {
        using NullVisitor::visit;
        void visit(const Types::UTF16String& value) override {
            bytes = 2 * std::char_traits<Types::u16>::length(value.value());
        }
        void visit(const Types::ISO7String& value) override {
            bytes = std::char_traits<char>::length(value.value());
        }
        std::size_t bytes = 0;
    } length;
    simpleValue(&text)->accept(length);
    return text.serializedSize() - length.bytes;
}

KeyForm formOf(const MetadataSet& set) { return {set.key(), set.propertyBerLength()}; }

class Collector {
public:
    Collector(const XMLBuilder::DocumentPlan& plan, const std::optional<DocumentPart>& part)
        : metadata_(plan.partition()), tags_(metadata_.partitionDictionary()), part_(part) {}

    DocumentSupplement collect() {
        findWhatIsUsual();
        // As a document has them, so that the same document always has the same instructions.
        Templates::vector<const MetadataSet*> order;
        const std::size_t outside = metadata_.calculateSerializationOrder(order, true, false);
        copyNumbers_ = numberCopies(metadata_, order, outside, part_);
        const bool mayHaveNamesakes = metadata_.isAmbiguous();
        for (const MetadataSet* set : order) {
            if (part_ && !part_->isWritten(*set)) {
                continue;
            }
            const auto namesakes = mayHaveNamesakes && set->hasInstanceUID()
                                       ? metadata_.resolve(set->instanceUID())
                                       : Metadata::Targets();
            if (namesakes.size() > 1 && &namesakes.front() == set) {
                countCopies(namesakes);
            }
            if (set->metaMetadataSet() == nullptr) {
                explainTagsOf(*set);
            } else {
                collect(*set, namesakes.size() > 1);
            }
        }
        for (auto set = metadata_.darkBegin(); set != metadata_.darkEnd(); ++set) {
            mxf::LocalSet properties((*set)->key(),
                                     {(*set)->value()->begin(), (*set)->value()->size()});
            while (const auto property = properties.next()) {
                explainTag(Types::LocalTag(property->tag));
            }
        }
        tellTags();
        tellClasses();
        return std::move(result_);
    }

private:
    void findWhatIsUsual();
    void countCopies(const Metadata::Targets& namesakes);
    std::optional<Types::u32> equalToFirst(const Metadata::Targets& namesakes, bool dark);
    void explainTagsOf(const MetadataSet& darkGroup);
    void explainTag(const Types::LocalTag& tag);
    void explainElement(const Element& element);
    void tellTags();
    void collect(const MetadataSet& set, bool hasNamesakes);
    void collect(const MetadataSet& set, const SetAddress& address);
    void collect(const PropertyAddress& property, const Element& element);
    std::vector<SetAddress> addressesOf(const MetadataSet& set, bool hasNamesakes);
    PropertyAddress addressOf(const SetAddress& set, const Element& element) const;
    std::string contentOf(const MetadataSet& set) const;
    void tellClasses();

    struct NamedByLabel {
        DocumentSupplement::PrimerEntry entry;
        bool isOtherVersion; ///< than the dictionary's
        bool isUnknown;      ///< so that its element has the label
    };

    const Metadata::PartitionMetadata& metadata_;
    const Metadata::PartitionDictionary& tags_;
    const std::optional<DocumentPart>& part_;
    DocumentSupplement result_;
    std::map<KLV::Key, KeyForm> usualForms_;      ///< by the dictionary's
    std::map<KLV::Key, Types::u32> unidentified_; ///< likewise, how many
    CopyNumbers copyNumbers_;
    using Tags = std::bitset<0x10000>;
    Tags explainedKnown_;   ///< that were looked at, of properties that the dictionary knows
    Tags explainedUnknown_; ///< of others
    Tags explainedDark_;    ///< that are in namedByTag_
    /// The tags of properties that a document names by their label, in its order.
    std::vector<NamedByLabel> namedByLabel_;
    /// The entries of tags that a document names as they are, in its order.
    std::vector<DocumentSupplement::PrimerEntry> namedByTag_;
};

/// What most texts and most sets of a class have in common is said once.
void Collector::findWhatIsUsual() {
    std::size_t bare = 0;
    std::size_t terminated = 0;
    std::map<KLV::Key, std::map<KeyForm, std::size_t>> forms;
    for (const MetadataSet* set : metadata_) {
        if (set->metaMetadataSet() == nullptr) {
            continue;
        }
        ++forms[set->metaMetadataSet()->key()][formOf(*set)];
        forEachElement(*set, [&](const Element& element) {
            if (const std::size_t terminator = terminatorSize(element); terminator != 0) {
                const std::size_t zeros = zerosAfter(element);
                bare += zeros == 0 ? 1 : 0;
                terminated += zeros == terminator ? 1 : 0;
            }
        });
    }
    result_.textsAreTerminated = terminated > bare;
    for (const auto& [setClass, counts] : forms) {
        usualForms_[setClass] =
            std::max_element(counts.begin(), counts.end(), [](const auto& a, const auto& b) {
                return a.second < b.second;
            })->first;
    }
}

/// Equal sets that share an InstanceUID would become one, and unequal ones would be a mistake.
void Collector::countCopies(const Metadata::Targets& namesakes) {
    const auto known = equalToFirst(namesakes, false);
    const auto dark = equalToFirst(namesakes, true);
    if (known || dark) {
        result_.copies.push_back({namesakes.front().instanceUID(), known, dark});
    }
}

/// How many of the sets are equal to the first of them in the document. Where the document holds
/// one of them twice, it is that one; else any number will do that is not too low.
/// @return nothing for less than two sets.
std::optional<Types::u32> Collector::equalToFirst(const Metadata::Targets& namesakes, bool dark) {
    std::map<std::string, Types::u32> contents;
    Types::u32 count = 0;
    Types::u32 most = 0;
    const std::string* twice = nullptr;
    for (const MetadataSet* each : namesakes) {
        if ((each->metaMetadataSet() == nullptr) != dark) {
            continue;
        }
        const auto content = contents.try_emplace(contentOf(*each)).first;
        ++count;
        most = std::max(most, ++content->second);
        if (copyNumbers_[each].size() > 1) {
            twice = &content->first;
        }
    }
    return count < 2          ? std::nullopt
           : twice == nullptr ? std::optional(most)
                              : std::optional(contents[*twice]);
}

std::string Collector::contentOf(const MetadataSet& set) const {
    std::vector<std::string> properties;
    forEachElement(set, [&](const Element& element) {
        const auto identity = identityOf(*element.metaAttribute(), tags_);
        properties.push_back(std::string(identity.begin(), identity.end()) + bytesOf(element));
    });
    std::stable_sort(properties.begin(), properties.end());
    const auto& key = set.key().bytes();
    std::string content(key.begin(), key.end());
    for (const std::string& property : properties) {
        content += std::to_string(property.size()) + ":" + property;
    }
    return content;
}

void Collector::explainTagsOf(const MetadataSet& darkGroup) {
    forEachElement(darkGroup, [&](const Element& element) {
        explainTag(Types::LocalTag(element.localTag()));
    });
}

/// Keeps what a tag of a dark set means: its bytes hold no more than the tag.
void Collector::explainTag(const Types::LocalTag& tag) {
    const auto* const label = tags_.find(tag, false);
    const auto* const registered = tags_.dictionary()->findElementByStaticTag(tag.value());
    if (label != nullptr && (registered == nullptr || registered->label() != *label) &&
        !explainedDark_.test(tag.value())) {
        explainedDark_.set(tag.value());
        namedByTag_.push_back({tag, *label});
    }
}

/// Keeps the label of an unknown property that a document names by its static tag, and the version
/// of the label of another.
void Collector::explainElement(const Element& element) {
    const auto* const definition = element.definition();
    const Types::LocalTag tag(element.localTag());
    auto& explained = definition == nullptr ? explainedUnknown_ : explainedKnown_;
    if (explained.test(tag.value())) {
        return;
    }
    explained.set(tag.value());
    if (definition == nullptr && tag.isStaticLocalTag()) {
        explainTag(tag);
    } else if (const auto* const label = tags_.find(tag, true)) {
        // A reader would give another version of a registered label its static tag, which may have
        // its registered meaning elsewhere.
        const auto* const registered = tags_.dictionary()->findElement(*label);
        namedByLabel_.push_back({{tag, *label},
                                 registered != nullptr && *label != registered->label(),
                                 definition == nullptr});
    }
}

/// A reader gives a property the tag of the first entry with its label. So those that a document
/// names by label come first, also where the label is the dictionary's and another entry would
/// take its place.
void Collector::tellTags() {
    std::map<std::array<Types::u8, 16>, std::set<Types::u16>> tagsOfLabels;
    for (const auto& [tag, label] : namedByTag_) {
        tagsOfLabels[label.withoutVersion()].insert(tag.value());
    }
    for (const auto& [entry, isOtherVersion, isUnknown] : namedByLabel_) {
        if (isOtherVersion || isUnknown) {
            tagsOfLabels[entry.label.withoutVersion()].insert(entry.tag.value());
        }
    }
    Tags told;
    for (const auto& [entry, isOtherVersion, isUnknown] : namedByLabel_) {
        const auto rivals = tagsOfLabels.find(entry.label.withoutVersion());
        const bool hasRivals = rivals != tagsOfLabels.end() &&
                               rivals->second.size() > rivals->second.count(entry.tag.value());
        if ((isOtherVersion || hasRivals) && !told.test(entry.tag.value())) {
            told.set(entry.tag.value());
            result_.primer.push_back(entry);
        }
    }
    for (const auto& entry : namedByTag_) {
        if (!told.test(entry.tag.value())) {
            result_.primer.push_back(entry);
        }
    }
}

/// The places where a document holds a set: it has some of those outside the tree twice.
std::vector<SetAddress> Collector::addressesOf(const MetadataSet& set, bool hasNamesakes) {
    if (!set.hasInstanceUID()) {
        const KLV::Key& setClass = set.metaMetadataSet()->key();
        return {{{}, setClass, unidentified_[setClass]++}};
    }
    const Types::UUID uid = set.instanceUID();
    if (!hasNamesakes) {
        return {{uid, {}, {}}};
    }
    std::vector<SetAddress> addresses;
    for (const Types::u32 copy : copyNumbers_[&set]) {
        addresses.push_back({uid, {}, copy});
    }
    return addresses;
}

PropertyAddress Collector::addressOf(const SetAddress& set, const Element& element) const {
    const Types::LocalTag tag(element.localTag());
    const auto* const definition = element.definition();
    const auto* const label = definition == nullptr ? tags_.find(tag, true) : &definition->label();
    return {set, label == nullptr ? std::nullopt : std::make_optional(*label), tag, 0};
}

void Collector::collect(const MetadataSet& set, bool hasNamesakes) {
    for (const SetAddress& address : addressesOf(set, hasNamesakes)) {
        collect(set, address);
    }
}

void Collector::collect(const MetadataSet& set, const SetAddress& address) {
    if (const KeyForm form = formOf(set); form != usualForms_[set.metaMetadataSet()->key()]) {
        result_.setKeys.push_back({address, form});
    }
    const bool mayRepeat = set.invalidBegin() != set.invalidEnd();
    std::map<XMLBuilder::PropertyIdentity, Types::u32> met;
    forEachElement(set, [&](const Element& element) {
        explainElement(element);
        const bool isLooked = mayNeedMore(element);
        if (isLooked || mayRepeat) {
            PropertyAddress property = addressOf(address, element);
            property.nth = mayRepeat ? met[property.identity()]++ : 0;
            if (isLooked) {
                collect(property, element);
            }
        }
    });
}

void Collector::collect(const PropertyAddress& property, const Element& element) {
    const std::string stored = bytesOf(element);
    auto expected = bytesFromDocument(element, EmptyParts::missing);
    if (expected && result_.textsAreTerminated) {
        expected->append(terminatorSize(element), '\0');
    }
    if (expected == stored) {
        return;
    }
    if (const auto filling = findFilling(element, stored)) {
        result_.forms.push_back({property,
                                 filling->isOfItems ? Form::Unit::item : Form::Unit::octets,
                                 static_cast<Types::u32>(filling->size)});
    } else {
        result_.bytes.push_back({property, stored});
    }
}

void Collector::tellClasses() {
    for (const auto& [setClass, usual] : usualForms_) {
        if (usual != KeyForm{setClass}) {
            result_.classKeys.push_back({setClass, usual});
        }
    }
    for (const auto& [setClass, count] : unidentified_) {
        result_.unidentified.push_back({setClass, count});
    }
}

} // namespace

DocumentSupplement collectSupplement(const XMLBuilder::DocumentPlan& plan,
                                     const std::optional<DocumentPart>& part) {
    return Collector(plan, part).collect();
}

} // namespace Corvid::Editing
