#pragma once

#include "host/dataio/Memory.h"
#include "host/metadata/MetadataSet.h"
#include "host/mxf/HeaderMetadataReader.h"

#include <optional>
#include <unordered_map>

namespace Corvid::XMLBuilder {

/// Where sets are in their file.
class SetPlaces {
public:
    SetPlaces(const Metadata::PartitionMetadata& partition, const mxf::SetOffsets& offsets);

    /// In bytes from the front of the file; nothing for a set that was made since.
    /// @param set  a MetadataSet or a DarkMetadataSet.
    std::optional<std::uint64_t> offsetOf(const void* set) const;

private:
    std::unordered_map<const void*, std::uint64_t> offsets_;
};

/// The bytes that a set has in a file, and which of them are which property.
class SetBytes {
public:
    struct Property {
        Types::LocalTag tag;
        std::size_t offset = 0; ///< of its tag, in bytes from the front of the set
        Types::ByteView value;
    };

    /// @throws LimitExceeded  a value has more than 65535 bytes.
    SetBytes(const Metadata::MetadataSet& set, Metadata::PartitionDictionary& primer);

    std::size_t size() const noexcept { return sink_.serializedSize(); }
    /// @param element  with a value.
    const Property& of(const Metadata::Element& element) const { return properties_.at(&element); }

private:
    DataIO::Memory::MemoryDataSink sink_;
    std::unordered_map<const Metadata::Element*, Property> properties_;
};

} // namespace Corvid::XMLBuilder
