#pragma once

#include "editing/Renaming.h"
#include "editing/compare/Comparison.h"
#include "tests/support/Model.h"

#include <memory>

/// What tests of comparisons share: differences as lists, and partitions with values of all types.
namespace Corvid::Testing {

std::vector<Editing::DifferenceKind> kindsOf(const std::vector<Editing::Difference>& differences);

std::vector<Editing::Difference> differencesOf(Metadata::PartitionMetadata& before,
                                               Metadata::PartitionMetadata& after,
                                               const Editing::Renaming& renaming = {});

std::vector<Editing::DifferenceKind> kindsBetween(Metadata::PartitionMetadata& before,
                                                  Metadata::PartitionMetadata& after);

/// All differences, a line each, for messages of tests.
std::string linesOf(const std::vector<Editing::Difference>& differences);
std::string linesOf(const Editing::Differences& differences);

/// True for the element by which a set is found, whose change makes it another set.
bool isInstanceUID(const Metadata::MetadataSet& set, const Metadata::Element& element);

/// True for a collection without items, of which the item size does not matter.
bool holdsNothing(const Metadata::Element& element);

/// A partition with a Preface (1) and a thing (2) of the dictionary of things.
class ThingPartition {
public:
    ThingPartition();

    /// Gives the thing a property with these bytes.
    void add(const std::string& tag, std::string_view bytes);
    /// Gives it an array or batch.
    /// @param items  of one size.
    void addItems(const std::string& tag, std::initializer_list<std::string_view> items);
    Metadata::PartitionMetadata& partition() { return model.partition; }

    Model model;
    Metadata::MetadataSet* thing;
};

/// A value of every type, alone and, where items may be of its size, twice in an array and a batch.
/// @param sampleName  of the samples of values: "lowest", "highest", "typical", "empty".
std::unique_ptr<ThingPartition> everyType(const std::string& sampleName);

} // namespace Corvid::Testing
