#pragma once

#include "Corvid_Inspection/Export.h"
#include "host/klv/Key.h"
#include "host/types/Types.h"

/// The few properties, sets and labels that a summary looks for (SMPTE ST 377-1). What they are
/// called is in the dictionary.
namespace Corvid::Inspection::Structural {

/// The bytes of two numbers, big-endian.
constexpr std::array<Types::u8, 16> sixteenBytes(Types::u64 front, Types::u64 back) {
    std::array<Types::u8, 16> bytes{};
    for (unsigned i = 0; i != 8; ++i) {
        bytes[i] = static_cast<Types::u8>(front >> (56 - 8 * i));
        bytes[8 + i] = static_cast<Types::u8>(back >> (56 - 8 * i));
    }
    return bytes;
}

/// The part of a label that its register assigns: the last 8 bytes, as a number.
template <class Bytes> constexpr Types::u64 itemOf(const Bytes& bytes) {
    Types::u64 item = 0;
    for (std::size_t i = 8; i != 16; ++i) {
        item = item << 8 | bytes[i];
    }
    return item;
}

/// Whether two items have the same first bytes.
/// @param length  how many, 1 to 8.
constexpr bool beginAlike(Types::u64 a, Types::u64 b, unsigned length) {
    const unsigned unused = 8 * (8 - length);
    return a >> unused == b >> unused;
}

/// A property whose values are of the class Value, or references. Its label without version byte.
template <class Value> struct Property {
    Types::u64 item;
    Types::UniversalLabel label() const {
        return Types::UniversalLabel(sixteenBytes(0x060e2b3401010100, item));
    }
};

// clang-format off
// Preface
constexpr Property<Types::StrongReference> contentStorage     {0x0601010402010000};
constexpr Property<Types::StrongReference> identifications    {0x0601010406040000};
constexpr Property<Types::UniversalLabel>  operationalPattern {0x0102020300000000};
constexpr Property<Types::UniversalLabel>  essenceContainers  {0x0102021002010000};
constexpr Property<Types::UniversalLabel>  descriptiveSchemes {0x0102021002020000};
constexpr Property<Types::UniversalLabel>  conformsTo         {0x0102021002040000};
// Identification
constexpr Property<Types::UTF16String>     companyName        {0x0520070102010000};
constexpr Property<Types::UTF16String>     productName        {0x0520070103010000};
constexpr Property<Types::ProductVersion>  productVersion     {0x0520070104000000};
constexpr Property<Types::UTF16String>     versionString      {0x0520070105010000};
constexpr Property<Types::UTF16String>     platform           {0x0520070106010000};
constexpr Property<Types::ProductVersion>  toolkitVersion     {0x052007010a000000};
constexpr Property<Types::Timestamp>       modificationDate   {0x0702011002030000};
// Content storage and packages
constexpr Property<Types::StrongReference> packages           {0x0601010405010000};
constexpr Property<Types::UMID32>          packageId          {0x0101151000000000};
constexpr Property<Types::UTF16String>     packageName        {0x0103030201000000};
constexpr Property<Types::Timestamp>       packageCreated     {0x0702011001030000};
constexpr Property<Types::StrongReference> tracks             {0x0601010406050000};
constexpr Property<Types::StrongReference> descriptor         {0x0601010402030000};
constexpr Property<Types::StrongReference> fileDescriptors    {0x06010104060b0000};
constexpr Property<Types::StrongReference> subDescriptors     {0x0601010406100000};
// Tracks and their components
constexpr Property<Types::UInt32>          trackId            {0x0107010100000000};
constexpr Property<Types::UTF16String>     trackName          {0x0107010201000000};
constexpr Property<Types::UInt32>          trackNumber        {0x0104010300000000};
constexpr Property<Types::StrongReference> trackSegment       {0x0601010402040000};
constexpr Property<Types::Rational>        editRate           {0x0530040500000000};
constexpr Property<Types::Rational>        eventEditRate      {0x0530040200000000};
constexpr Property<Types::Position>        origin             {0x0702010301030000};
constexpr Property<Types::UniversalLabel>  dataDefinition     {0x0407010000000000};
constexpr Property<Types::Length>          duration           {0x0702020101030000};
constexpr Property<Types::StrongReference> components         {0x0601010406090000};
constexpr Property<Types::Position>        startTimecode      {0x0702010301050000};
constexpr Property<Types::UInt16>          framesPerSecond    {0x0404010102060000};
constexpr Property<Types::Boolean>         dropFrame          {0x0404010105000000};
// Definitions that a file brings along
constexpr Property<Types::UniversalLabel>  definitionId       {0x0101150300000000};
constexpr Property<Types::UTF16String>     definitionName     {0x0107010203010000};
// clang-format on

/// The classes of sets, by the number in their key.
enum class SetClass : Types::u8 {
    fileDescriptor = 0x25,
    essenceDescriptor = 0x24,
    pictureDescriptor = 0x27,
    soundDescriptor = 0x42,
    dataDescriptor = 0x43,
    multipleDescriptor = 0x44,
    wavePcmDescriptor = 0x48,
    immersiveSoundDescriptor = 0x7B,
    filmDescriptor = 0x2D,
    tapeDescriptor = 0x2E,
    importDescriptor = 0x4A,
    recordingDescriptor = 0x4B,
    auxiliaryDescriptor = 0x4E,
    audioChannelLabel = 0x6B,
    soundfieldGroupLabel = 0x6C,
    immersiveSoundLabel = 0x7C,
    descriptiveMarker = 0x41,
    materialPackage = 0x36,
    sourcePackage = 0x37,
    timecode = 0x14,
    definition = 0x1A,
    definitionOfData = 0x1B,
    dictionary = 0x22,
};

/// The key of a class of sets, version byte 1.
inline KLV::Key keyOf(SetClass set) {
    return KLV::Key(
        sixteenBytes(0x060e2b3402530101, 0x0d01010101010000 | static_cast<Types::u64>(set) << 8));
}

/// True for the key of a set that describes classes, properties and types (SMPTE ST 377-2).
CORVID_INSPECTION_EXPORT bool isOfMetaDictionary(const KLV::Key& key);

/// "Picture", "Sound", "Timecode" and so on for the label of a data definition (SMPTE ST 400);
/// empty for another label.
CORVID_INSPECTION_EXPORT std::string trackKind(const Types::UniversalLabel& label);

/// "OP1a", "OP-Atom" and so on (SMPTE ST 377-1, ST 390); empty for a label that is none.
CORVID_INSPECTION_EXPORT std::string operationalPatternName(const Types::UniversalLabel& label);

/// What the label says of the pattern, in words; empty where it says nothing.
CORVID_INSPECTION_EXPORT std::string operationalPatternWords(const Types::UniversalLabel& label);

} // namespace Corvid::Inspection::Structural
