#pragma once

#include "editing/Renaming.h"
#include "editing/compare/Differences.h"
#include "editing/compare/PropertyList.h"

namespace Corvid::Editing {

/// Compares sets that belong together: one of a file and what came back of it from XML.
class SetComparison {
public:
    /// @param before, after  tags of the partitions that the sets are from. All is borrowed.
    SetComparison(const Metadata::PartitionDictionary& before,
                  const Metadata::PartitionDictionary& after, const Renaming& renaming,
                  Differences& differences)
        : before_(before), after_(after), renaming_(renaming), differences_(differences) {}

    /// Adds the differences of class, key and properties; of the InstanceUID, the label counts but
    /// not the value.
    void compare(const Metadata::MetadataSet& before, const Metadata::MetadataSet& after);

    /// All that a set of the file says, references renamed, and a set that came back: the same
    /// where nothing is lost.
    std::string contentBefore(const Metadata::MetadataSet& before) const;
    std::string content(const Metadata::MetadataSet& after) const;

    /// A difference that a set has as a whole.
    static Difference differenceOf(DifferenceKind kind, const Metadata::MetadataSet& set,
                                   std::string detail = {});
    void add(DifferenceKind kind, const Metadata::MetadataSet& set, std::string detail = {}) {
        differences_.add(differenceOf(kind, set, std::move(detail)));
    }

private:
    using Properties = std::vector<ListedProperty>;
    using Range = std::pair<Properties::const_iterator, Properties::const_iterator>;

    void add(DifferenceKind kind, const Metadata::PartitionDictionary& tags,
             const ListedProperty& property, std::string detail = {});
    void compareInstanceUIDs(const Metadata::MetadataSet& before,
                             const Metadata::MetadataSet& after);
    bool sayTheSame(const Metadata::MetadataSet& before, const Metadata::MetadataSet& after);
    void compareProperties(const Metadata::MetadataSet& before, const Metadata::MetadataSet& after);
    void compareAlike(Range olds, Range news);
    void compareLabels(const ListedProperty& before, const ListedProperty& after);

    const Metadata::PartitionDictionary& before_;
    const Metadata::PartitionDictionary& after_;
    const Renaming& renaming_;
    const Renaming asTheyAre_;
    Differences& differences_;
    const Metadata::MetadataSet* set_ = nullptr; ///< the one at work, as it was before
    std::string bytesBefore_;                    ///< for sayTheSame(), which is called often
    std::string bytesAfter_;
};

} // namespace Corvid::Editing
