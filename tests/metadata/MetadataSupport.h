#pragma once

#include "host/base/Exceptions.h"
#include "host/dataio/Memory.h"
#include "host/dictionary/MetaAttribute.h"
#include "host/dictionary/MisplacedAttribute.h"
#include "host/dictionary/UnknownAttribute.h"
#include "host/metadata/PartitionMetadata.h"
#include "host/types/Integers.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// A small dictionary with one property of every kind, and sets made from it.
namespace Corvid::Testing {

using Types::u16;
using Types::u32;
using Types::u8;
using Bytes = std::vector<u8>;

inline Types::ByteView viewOf(const Bytes& bytes) { return {bytes.data(), bytes.size()}; }

constexpr std::string_view dictionaryText = R"(
namespace t urn:test
namespace rp210 urn:SMPTE:RP210

set t:Root 06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.01.00 - abstract
property rp210:InstanceUID 06.0e.2b.34.01.01.01.01.01.01.15.02.00.00.00.00 3c.0a UUID required 1
property t:Generation 06.0e.2b.34.01.01.01.01.7f.00.00.00.00.00.00.20 01.02 UUID optional 2

set t:Preface 06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.2f.00 t:Root concrete
property t:Number 06.0e.2b.34.01.01.01.01.7f.00.00.00.00.00.00.01 11.01 UInt16 required 3
property t:Text 06.0e.2b.34.01.01.01.01.7f.00.00.00.00.00.00.02 11.02 UTF16String optional 4
property t:Child 06.0e.2b.34.01.01.01.01.7f.00.00.00.00.00.00.03 11.03 StrongReference optional 5
property t:Friend 06.0e.2b.34.01.01.01.01.7f.00.00.00.00.00.00.04 11.04 WeakReference optional 6
property t:Kids 06.0e.2b.34.01.01.01.01.7f.00.00.00.00.00.00.05 11.05 Array(StrongReference) optional 7
property t:Friends 06.0e.2b.34.01.01.01.01.7f.00.00.00.00.00.00.06 11.06 Batch(WeakReference) optional 8
property t:Numbers 06.0e.2b.34.01.01.01.01.7f.00.00.00.00.00.00.07 11.07 Array(UInt16) optional 9
property t:Labels 06.0e.2b.34.01.01.01.01.7f.00.00.00.00.00.00.08 11.08 Batch(UniversalLabel) optional 10
property t:Dynamic 06.0e.2b.34.01.01.01.01.7f.00.00.00.00.00.00.09 - UInt32 optional 11
property t:Bag 06.0e.2b.34.01.01.01.01.7f.00.00.00.00.00.00.0a 11.0a Batch(StrongReference) optional 12

set t:Other 06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.7e.00 t:Root concrete
property t:OtherOnly 06.0e.2b.34.01.01.01.01.7f.00.00.00.00.00.00.30 12.01 UInt8 optional 13

set t:Private 06.0e.2b.34.02.53.01.01.0d.7f.00.00.00.00.00.00 t:Root concrete
)";

inline KLV::Key keyOf(u8 last) {
    return KLV::Key(
        std::array<u8, 16>{6, 0x0e, 0x2b, 0x34, 2, 0x53, 1, 1, 0x0d, 1, 1, 1, 1, 1, last, 0});
}
inline KLV::Key prefaceKey() { return keyOf(0x2f); }
inline KLV::Key otherKey() { return keyOf(0x7e); }
inline KLV::Key privateKey() {
    return KLV::Key(
        std::array<u8, 16>{6, 0x0e, 0x2b, 0x34, 2, 0x53, 1, 1, 0x0d, 0x7f, 0, 0, 0, 0, 0, 0});
}

inline Types::UniversalLabel labelOf(u16 last, u8 version = 1) {
    return Types::UniversalLabel(std::array<u8, 16>{6, 0x0e, 0x2b, 0x34, 1, 1, 1, version, 0x7f, 0,
                                                    0, 0, 0, 0, static_cast<u8>(last >> 8),
                                                    static_cast<u8>(last)});
}
const auto number = labelOf(1);
const auto text = labelOf(2);
const auto child = labelOf(3);
const auto friendOf = labelOf(4);
const auto childArray = labelOf(5);
const auto friendBatch = labelOf(6);
const auto numbers = labelOf(7);
const auto labels = labelOf(8);
const auto dynamic = labelOf(9);
const auto childBatch = labelOf(10);
const auto otherOnly = labelOf(0x30);

inline const Types::UniversalLabel& instanceUID() {
    return Metadata::Structural::StructuralMetadataULs::instanceUID();
}

inline Templates::SharedPtr<MetaMetadata::Dictionary> dictionaryOf(std::string_view content) {
    MetaMetadata::Dictionary::Texts texts;
    texts.push_back({"test.dict", content});
    return MetaMetadata::Dictionary::fromTexts(texts);
}

/// A UUID whose last four bytes are a number.
inline Types::UUID uuidOf(u32 last) {
    std::array<u8, 16> bytes{};
    Types::writeBigEndian(bytes.data() + 12, last);
    return Types::UUID(bytes);
}

inline Metadata::Element::Attribute unknown(u16 tag) {
    return Metadata::Element::Attribute(new MetaMetadata::UnknownAttribute(
        Types::LocalTag(tag), MetaMetadata::UnknownAttribute::unknownLabel));
}

/// The bytes of a set in a file.
inline Bytes bytesOf(const Metadata::MetadataSet& set, Metadata::PartitionMetadata& partition) {
    DataIO::Memory::MemoryDataSink sink;
    set.serialize(sink, partition.partitionDictionary());
    const Bytes bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
    EXPECT_EQ(set.serializedSize(), bytes.size());
    return bytes;
}

/// A partition with the small dictionary.
class MetadataTest : public ::testing::Test {
protected:
    /// A set without any element but an InstanceUID.
    Metadata::MetadataSet& makeSet(const KLV::Key& key, u32 uuid) {
        auto& set = partition.createEmptyMetadataSet(key, *dictionary->findSet(key));
        add(set, instanceUID()).set(uuidOf(uuid).clone());
        return set;
    }

    /// Adds a property of the set's class.
    template <class Kind = Metadata::SimpleElement>
    Kind& add(Metadata::MetadataSet& set, const Types::UniversalLabel& label, u16 tag = 0) {
        const auto* attribute = set.metaMetadataSet()->find(label);
        return dynamic_cast<Kind&>(set.createElement(label, *attribute, tag));
    }

    Metadata::Element::Attribute misplaced(const Types::UniversalLabel& label) {
        return Metadata::Element::Attribute(
            new MetaMetadata::MisplacedAttribute(*dictionary->findElement(label)));
    }

    Templates::SharedPtr<MetaMetadata::Dictionary> dictionary = dictionaryOf(dictionaryText);
    Metadata::PartitionMetadata partition{dictionary};
};

} // namespace Corvid::Testing
