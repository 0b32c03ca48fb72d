// Makes header metadata from nothing, a clip with one timecode track, and writes it as a header
// partition (SMPTE ST 377-1).

#include "host/base/ExceptionText.h"
#include "host/dataio/FileSink.h"
#include "host/dictionary/Dictionary.h"
#include "host/metadata/Properties.h"
#include "host/mxf/HeaderMetadataWriter.h"
#include "host/types/UID.h"

#include <algorithm>
#include <ctime>
#include <iostream>

using namespace Corvid;
using Metadata::addTarget;
using Metadata::createSet;
using Metadata::setItems;
using Metadata::setValue;
using Types::UniversalLabel;

namespace {

// Labels of SMPTE ST 400: operational pattern OP1a, the data definition of timecode.
constexpr std::array<Types::u8, 16> op1a = {6,    0x0e, 0x2b, 0x34, 4, 1, 1, 1,
                                            0x0d, 1,    2,    1,    1, 1, 9, 0};
constexpr std::array<Types::u8, 16> timecode = {6, 0x0e, 0x2b, 0x34, 4, 1, 1, 1,
                                                1, 3,    2,    1,    1, 0, 0, 0};

Types::UUID newIdentifier() {
    return Types::Factories::UID::generateUUID(Types::Factories::UID::uniqueVersion);
}

/// A basic UMID made of a new UUID (SMPTE ST 330).
Types::UMID32 newPackageID() {
    std::array<Types::u8, 32> bytes = {6, 0x0a, 0x2b, 0x34, 1, 1, 1, 5, 1, 1, 0x0f, 0x20, 0x13};
    const Types::UUID identifier = newIdentifier();
    std::copy(identifier.bytes().begin(), identifier.bytes().end(), bytes.begin() + 16);
    return Types::UMID32(bytes);
}

Types::Timestamp now() {
    const std::time_t seconds = std::time(nullptr);
    std::tm time{};
    gmtime_r(&seconds, &time);
    const auto byte = [](int number) { return static_cast<Types::u8>(number); };
    return {static_cast<Types::u16>(time.tm_year + 1900),
            byte(time.tm_mon + 1),
            byte(time.tm_mday),
            byte(time.tm_hour),
            byte(time.tm_min),
            byte(time.tm_sec),
            0};
}

Types::UTF16String text(const char* utf8) {
    return Types::UTF16String(Platform::fromUtf8(utf8).c_str());
}

/// A track of 10 s of timecode from 10:00:00:00, 25 frames a second.
Metadata::MetadataSet& makeTimecodeTrack(Metadata::PartitionMetadata& metadata) {
    const Types::Length duration(250);
    auto& track = createSet(metadata, "TimelineTrack");
    setValue(track, "TrackID", Types::UInt32(1));
    setValue(track, "EssenceTrackNumber", Types::UInt32(0));
    setValue(track, "EditRate", Types::Rational(25, 1));
    setValue(track, "Origin", Types::Position(0));
    auto& sequence = createSet(metadata, "Sequence");
    setValue(sequence, "ComponentDataDefinition", UniversalLabel(timecode));
    setValue(sequence, "ComponentLength", duration);
    auto& component = createSet(metadata, "Timecode");
    setValue(component, "ComponentDataDefinition", UniversalLabel(timecode));
    setValue(component, "ComponentLength", duration);
    setValue(component, "FramesPerSecond", Types::UInt16(25));
    setValue(component, "StartTimecode", Types::Position(10 * 60 * 60 * 25));
    setValue(component, "DropFrame", Types::Boolean(false));
    addTarget(sequence, "ComponentObjects", component);
    addTarget(track, "TrackSegment", sequence);
    return track;
}

/// @return the Preface.
Metadata::MetadataSet& makeSets(Metadata::PartitionMetadata& metadata, const char* name) {
    const Types::Timestamp time = now();
    auto& preface = createSet(metadata, "Preface");
    setValue(preface, "FileLastModified", time);
    setValue(preface, "FormatVersion", Types::VersionType(1, 3));
    setValue(preface, "OperationalPattern", UniversalLabel(op1a));
    setItems<UniversalLabel>(preface, "EssenceContainers", {});
    setItems<UniversalLabel>(preface, "DescriptiveSchemes", {});

    auto& program = createSet(metadata, "Identification");
    setValue(program, "GenerationID", newIdentifier());
    setValue(program, "ApplicationSupplierName", text("An example"));
    setValue(program, "ApplicationName", text("makeMetadata"));
    setValue(program, "ApplicationVersionString", text("1"));
    setValue(program, "ApplicationProductID", newIdentifier());
    setValue(program, "FileModificationDate", time);
    addTarget(preface, "IdentificationList", program);

    auto& package = createSet(metadata, "MaterialPackage");
    setValue(package, "PackageID", newPackageID());
    setValue(package, "PackageName", text(name));
    setValue(package, "CreationTime", time);
    setValue(package, "PackageLastModified", time);
    addTarget(package, "PackageTracks", makeTimecodeTrack(metadata));

    auto& storage = createSet(metadata, "ContentStorage");
    addTarget(storage, "Packages", package);
    addTarget(preface, "ContentStorageObject", storage);
    return preface;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: makeMetadata NAME NEW.mxf\n";
        return 2;
    }
    try {
        Metadata::PartitionMetadata metadata(MetaMetadata::Dictionary::builtIn());
        const Metadata::MetadataSet& preface = makeSets(metadata, argv[1]);
        const mxf::HeaderMetadataWriter writer(metadata);
        DataIO::FileSink output(argv[2]);
        mxf::writeHeaderPartition(mxf::headerPack(preface), writer, output);
        output.commit();
    } catch (...) {
        std::cerr << argv[2] << ": " << Exceptions::currentMessage() << '\n';
        return 1;
    }
}
