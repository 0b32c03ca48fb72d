#include "tests/editing/Differences.h"

#include "editing/compare/CompareRenamed.h"

#include "tests/support/ThingsDictionary.h"
#include "tests/types/Samples.h"

#include <algorithm>

namespace Corvid::Testing {

using Kind = Editing::DifferenceKind;
using Metadata::Element;
using Metadata::MetadataSet;
using Metadata::PartitionMetadata;

std::vector<Kind> kindsOf(const std::vector<Editing::Difference>& differences) {
    std::vector<Kind> kinds;
    std::transform(differences.begin(), differences.end(), std::back_inserter(kinds),
                   [](const auto& each) { return each.kind; });
    return kinds;
}

std::vector<Editing::Difference> differencesOf(PartitionMetadata& before, PartitionMetadata& after,
                                               const Editing::Renaming& renaming) {
    const auto differences = Editing::compareRenamed(before, after, renaming).differences;
    return {differences.begin(), differences.end()};
}

std::vector<Kind> kindsBetween(PartitionMetadata& before, PartitionMetadata& after) {
    return kindsOf(differencesOf(before, after));
}

std::string linesOf(const std::vector<Editing::Difference>& differences) {
    std::string text;
    for (const auto& each : differences) {
        text += std::string(Editing::describe(each.kind).name) + " " + each.set + " " +
                each.instanceUID + " " + each.property + " " + each.detail + "\n";
    }
    return text;
}

std::string linesOf(const Editing::Differences& differences) {
    return linesOf(std::vector(differences.begin(), differences.end()));
}

bool isInstanceUID(const MetadataSet& set, const Element& element) {
    return set.metaMetadataSet() != nullptr &&
           set.find(Metadata::Structural::StructuralMetadataULs::instanceUID()) == &element;
}

bool holdsNothing(const Element& element) {
    const auto* const references =
        dynamic_cast<const Metadata::ReferenceCollectionElement*>(&element);
    const auto* const values = dynamic_cast<const Metadata::CollectionElement*>(&element);
    return (references != nullptr && references->size() == 0) ||
           (values != nullptr && values->value()->size() == 0);
}

ThingPartition::ThingPartition() : model(Model::extendedBy(thingsDictionary())) {
    model.reference(model.set("Preface", 1), "ContentStorageObject", 2);
    thing = &model.set("Thing", 2);
}

void ThingPartition::add(const std::string& tag, std::string_view bytes) {
    EXPECT_TRUE(model.element(*thing, tag).parse(Model::view(bytes))) << tag;
}

void ThingPartition::addItems(const std::string& tag,
                              std::initializer_list<std::string_view> items) {
    const std::size_t size = items.size() == 0 ? 0 : items.begin()->size();
    std::string bytes{0,
                      0,
                      0,
                      static_cast<char>(items.size()),
                      0,
                      0,
                      static_cast<char>(size >> 8),
                      static_cast<char>(size)};
    for (const auto& item : items) {
        bytes += item;
    }
    add(tag, bytes);
}

std::unique_ptr<ThingPartition> everyType(const std::string& sampleName) {
    auto things = std::make_unique<ThingPartition>();
    const auto add = [&](const std::string& tag, auto* type, bool isItem) {
        using T = std::remove_pointer_t<decltype(type)>;
        for (const Sample& each : Samples<T>::fitting()) {
            if (each.name == sampleName) {
                const std::string bytes(each.bytes.begin(), each.bytes.end());
                things->add(tag, bytes);
                if (isItem && !bytes.empty() && 2 * bytes.size() + 8 <= 0xFFFF) {
                    things->addItems(tag + "Array", {bytes, bytes});
                    things->addItems(tag + "Batch", {bytes, bytes});
                }
            }
        }
    };
#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    if constexpr (Id != Types::Identifiers::Array && Id != Types::Identifiers::Batch &&            \
                  Id != Types::Identifiers::DataValue) {                                           \
        /* The items of a collection have one size by their type, which these two have not. */     \
        add(#Class, static_cast<Types::Class*>(nullptr),                                           \
            Id != Types::Identifiers::J2KCodingStyleDefault &&                                     \
                Id != Types::Identifiers::J2KQuantisationDefault);                                 \
    }
#include "host/types/ValueTypes.def"
    return things;
}

} // namespace Corvid::Testing
