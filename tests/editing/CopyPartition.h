#pragma once

#include "host/metadata/PartitionMetadata.h"

#include <functional>
#include <memory>
#include <string>

namespace Corvid::Testing {

/// What becomes of a copy; what is not set changes nothing.
struct Edits {
    /// False leaves a set out.
    std::function<bool(const Metadata::MetadataSet& set)> keepsSet;
    /// May change the bytes of a value; false leaves the property out.
    std::function<bool(const Metadata::Element& element, std::string& bytes)> keepsValue;
};

/// Copies the sets of a partition through the bytes of their values. Dark sets stay out, but for
/// those whose properties can be separated.
/// @return null where edited bytes do not fit the type of their property.
std::unique_ptr<Metadata::PartitionMetadata> copyOf(const Metadata::PartitionMetadata& source,
                                                    const Edits& edits = {});

/// The bytes of an element's value.
std::string valueOf(const Metadata::Element& element);

/// Calls the work with every element that has a value, and its set.
void forEachValue(
    const Metadata::PartitionMetadata& partition,
    const std::function<void(const Metadata::MetadataSet&, const Metadata::Element&)>& work);

/// Work on a copy of which the element is not what it was in its set.
using EditedWork = std::function<void(const Metadata::MetadataSet&, const Metadata::Element&,
                                      Metadata::PartitionMetadata& copy)>;

/// Calls the work with copies of a partition of which each has one byte of one value changed.
void forEachChangedByte(const Metadata::PartitionMetadata& source, const EditedWork& work);

/// And with copies that lack one property.
void forEachMissingValue(const Metadata::PartitionMetadata& source, const EditedWork& work);

} // namespace Corvid::Testing
