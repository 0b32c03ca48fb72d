#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Makes the bytes of MXF files by hand: every field can be given a value of its own, true or not.
/// It uses nothing of the project, so a mistake of the library is not hidden by its own twin.
namespace Corvid::Testing {

using Bytes = std::vector<unsigned char>;

/// Bytes of hexadecimal pairs; full stops and spaces between them do not matter.
Bytes hex(std::string_view text);
/// A number of that many bytes, big-endian.
Bytes number(std::uint64_t value, unsigned size);
/// All parts one after the other.
Bytes join(const std::vector<Bytes>& parts);
Bytes repeat(unsigned char value, std::size_t count);
/// The file's bytes as text, for streams.
std::string asText(const Bytes& bytes);

/// A UUID whose last two bytes hold the number and whose others are not zero.
Bytes uuid(unsigned number);
/// UTF-16 text, big-endian, without terminator.
Bytes utf16(std::u16string_view text);
/// An array or batch; count and item size may lie.
Bytes batch(const std::vector<Bytes>& items, std::size_t itemSize,
            std::optional<std::uint32_t> countSaid = {},
            std::optional<std::uint32_t> itemSizeSaid = {});

/// A BER length of 1 to 9 octets.
Bytes ber(std::uint64_t value, unsigned octets = 4);
/// A KLV triplet; the length may lie.
Bytes klv(const Bytes& key, const Bytes& value, unsigned octets = 4,
          std::optional<std::uint64_t> lengthSaid = {});
/// A property of a local set; the length may lie.
Bytes property(unsigned tag, const Bytes& value, std::optional<unsigned> lengthSaid = {});
/// A fill item.
Bytes fill(std::size_t valueSize, unsigned char version = 2, unsigned octets = 4);

/// The key of a structural set by its fifteenth byte.
Bytes structuralKey(unsigned char number);
inline constexpr unsigned char prefaceSet = 0x2F;
inline constexpr unsigned char contentStorageSet = 0x18;
inline constexpr unsigned char identificationSet = 0x30;
inline constexpr unsigned char timelineTrackSet = 0x3B;
Bytes primerKey();
Bytes indexSegmentKey();
Bytes essenceKey();

/// Tags of the standard, and labels.
inline constexpr unsigned instanceUIDTag = 0x3C0A;
Bytes instanceUIDLabel();
/// The labels of the static tags that sets made here use: InstanceUID, the Preface's
/// LastModifiedDate (3b02), ContentStorage (3b03), Version (3b05), Identifications (3b06), an
/// Identification's company name (3c01), a track's number and name (4801, 4802) and edit rate
/// (4b01).
const std::vector<std::pair<unsigned, Bytes>>& standardLabels();

/// A primer pack; count and item size may lie.
Bytes primer(const std::vector<std::pair<unsigned, Bytes>>& entries,
             std::optional<std::uint32_t> countSaid = {},
             std::optional<std::uint32_t> itemSizeSaid = {}, unsigned octets = 4);
/// A primer pack with the standard labels.
Bytes standardPrimer();

/// A set with an InstanceUID in front of its other properties.
Bytes set(const Bytes& key, unsigned instance, const std::vector<Bytes>& properties = {},
          unsigned octets = 4);
/// The same sets with BER lengths in the place of their properties' lengths of two bytes, each as
/// short as can be (SMPTE ST 336).
Bytes withBerLengths(const Bytes& sets);
/// A Preface (instance 1) that owns a ContentStorage (instance 2), both as small as can be.
Bytes smallSets();
/// standardPrimer() and smallSets().
Bytes smallMetadata();

/// A partition; what is not set is made true when the file is built.
struct PartitionSpec {
    unsigned char kind = 2;   ///< 2 header, 3 body, 4 footer
    unsigned char status = 4; ///< closed and complete
    Bytes behindPack;         ///< fill before the primer pack
    Bytes metadata;           ///< from the primer pack on
    Bytes behindMetadata;     ///< index tables and essence
    unsigned packOctets = 4;
    Bytes operationalPattern = hex("06.0e.2b.34.04.01.01.01.0d.01.02.01.01.01.01.00");
    std::vector<Bytes> essenceContainers;
    std::uint32_t bodySid = 0;
    std::uint32_t kagSize = 1;
    std::optional<std::uint64_t> thisPartition;
    std::optional<std::uint64_t> previousPartition;
    std::optional<std::uint64_t> footerPartition;
    std::optional<std::uint64_t> headerByteCount;
    std::optional<std::uint32_t> essenceContainerCount;
    std::optional<std::uint64_t> packLength;
};

PartitionSpec headerPartition(Bytes metadata = smallMetadata());
PartitionSpec bodyPartition(Bytes metadata = {});
PartitionSpec footerPartition(Bytes metadata = {});

/// Puts partitions together to a file.
class MxfBuilder {
public:
    MxfBuilder& runIn(Bytes bytes);
    MxfBuilder& add(PartitionSpec partition);
    /// Ends the file with a random index pack.
    MxfBuilder& withRandomIndexPack();
    /// Ends the file with a random index pack of these offsets.
    MxfBuilder& withRandomIndexPack(std::vector<std::uint64_t> offsets);

    /// The offset of a partition that has been added, from the header partition.
    std::uint64_t offsetOf(std::size_t partition) const;
    Bytes build() const;

private:
    Bytes pack(std::size_t index) const;
    std::size_t sizeOf(const PartitionSpec& partition) const;

    Bytes runIn_;
    std::vector<PartitionSpec> partitions_;
    bool withRandomIndexPack_ = false;
    std::optional<std::vector<std::uint64_t>> offsetsSaid_;
};

} // namespace Corvid::Testing
