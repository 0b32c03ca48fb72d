#pragma once

#include "host/metadata/PartitionMetadata.h"

#include <vector>

namespace Corvid::Tool {

/// Takes the values that a document must not hold, because no reader would take it, out of a
/// partition, and puts them back at the end of the scope.
class SetAside {
public:
    /// @param metadata  borrowed; must outlive the object.
    explicit SetAside(const Metadata::PartitionMetadata& metadata);
    SetAside(const SetAside&) = delete;
    SetAside& operator=(const SetAside&) = delete;
    ~SetAside();

private:
    class Taker;

    std::vector<std::pair<Metadata::SimpleElement*, Templates::auto_ptr<Types::SimpleDataType>>>
        values_;
    std::vector<std::pair<Metadata::CollectionElement*, Templates::auto_ptr<Types::Collection>>>
        collections_;
};

} // namespace Corvid::Tool
