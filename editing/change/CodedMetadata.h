#pragma once

#include "host/metadata/PartitionMetadata.h"
#include "host/mxf/rewrite/HeaderLayout.h"

#include <memory>

namespace Corvid::Editing {

/// The bytes that a partition has in a file of its own, and their map.
class CodedMetadata {
public:
    /// @param metadata  borrowed; its primer pack gets the entries that it lacks.
    /// @throws LimitExceeded, InvalidFormat  it can't be written.
    explicit CodedMetadata(Metadata::PartitionMetadata& metadata);
    ~CodedMetadata();

    const mxf::HeaderLayout& layout() const noexcept;

private:
    struct Content;
    std::unique_ptr<Content> content_;
};

} // namespace Corvid::Editing
