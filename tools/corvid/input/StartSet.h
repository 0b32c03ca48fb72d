#pragma once

#include "host/metadata/PartitionMetadata.h"

#include <optional>
#include <string>

namespace Corvid::Tool {

/// The set that people want to begin with.
class StartSet {
public:
    /// @param text  its InstanceUID in any form that people have; empty for the Preface.
    /// @throws UsageError  it is none.
    explicit StartSet(std::string text);

    /// Nothing for the Preface.
    const std::optional<Types::UUID>& identifier() const noexcept { return identifier_; }

    /// @throws InvalidArgument  no set has that InstanceUID.
    /// @throws InvalidFormat    there is no Preface.
    const Metadata::MetadataSet& in(const Metadata::PartitionMetadata& metadata) const;

private:
    std::string text_;
    std::optional<Types::UUID> identifier_;
};

} // namespace Corvid::Tool
