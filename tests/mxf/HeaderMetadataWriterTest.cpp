#include "host/mxf/HeaderMetadataWriter.h"

#include "host/metadata/Properties.h"
#include "tests/mxf/ReadBack.h"
#include "tests/support/Model.h"

namespace Corvid::mxf {
namespace {

using Testing::Bytes;
using Testing::hex;
using Testing::join;
using Testing::klv;
using Testing::Model;
using Testing::MxfBuilder;
using Testing::number;
using Testing::property;
using Testing::ReadBack;
using Testing::structuralKey;

/// An InstanceUID as its bytes.
Bytes id(unsigned number) { return Testing::uuid(number); }

Bytes bytesOf(const DataIO::Memory::MemoryDataSink& sink) {
    return {sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize()};
}

/// The bytes from the primer pack on.
Bytes written(Metadata::PartitionMetadata& metadata) {
    const HeaderMetadataWriter writer(metadata);
    DataIO::Memory::MemoryDataSink sink;
    writer.write(sink);
    EXPECT_EQ(writer.size(), sink.serializedSize());
    return bytesOf(sink);
}

Bytes writtenPartition(Metadata::PartitionMetadata& metadata, const PartitionPack& pack) {
    DataIO::Memory::MemoryDataSink sink;
    writeHeaderPartition(pack, HeaderMetadataWriter(metadata), sink);
    return bytesOf(sink);
}

PartitionPack closedAndComplete(Types::u32 kagSize) {
    PartitionPack pack;
    pack.status = PartitionStatus::closedComplete;
    pack.majorVersion = 1;
    pack.minorVersion = 3;
    pack.kagSize = kagSize;
    const Bytes pattern = Testing::headerPartition().operationalPattern;
    pack.operationalPattern = Types::UniversalLabel(Types::ByteView{pattern.data(), 16});
    return pack;
}

/// A primer pack with those of the standard labels, in that order.
Bytes primerOf(const std::vector<unsigned>& tags) {
    std::vector<std::pair<unsigned, Bytes>> entries;
    for (const unsigned tag : tags) {
        const auto& labels = Testing::standardLabels();
        entries.push_back(*std::find_if(labels.begin(), labels.end(),
                                        [tag](const auto& entry) { return entry.first == tag; }));
    }
    return Testing::primer(entries);
}

/// What fill is needed after so many bytes, the naive way.
std::size_t fillSize(std::size_t position, std::size_t kag) {
    std::size_t size = 0;
    while (kag > 1 && ((position + size) % kag != 0 || (size != 0 && size < 20))) {
        ++size;
    }
    return size;
}

struct Unchanged {
    const char* name;
    Bytes metadata;
};
void PrintTo(const Unchanged& c, std::ostream* out) { *out << c.name; }

const Bytes darkKey = hex("06.0e.2b.34.02.53.01.01.0e.7f.7f.7f.01.02.03.00");
const Bytes privateKey = hex("a0.24.00.60.94.eb.75.cb.ce.2a.ca.4d.51.ab.11.d3");
const Bytes preface = structuralKey(Testing::prefaceSet);

Bytes with(const Bytes& more) { return join({Testing::smallMetadata(), more}); }

class WritesWhatItRead : public ::testing::TestWithParam<Unchanged> {};

TEST_P(WritesWhatItRead, byteForByte) {
    ReadBack back(MxfBuilder().add(Testing::headerPartition(GetParam().metadata)));
    EXPECT_EQ(written(back.metadata()), GetParam().metadata);
    EXPECT_EQ(writtenPartition(*back.read.metadata, back.file.partitions()[0].pack), back.bytes);
}

INSTANTIATE_TEST_SUITE_P(
    , WritesWhatItRead,
    ::testing::Values(
        Unchanged{"SmallMetadata", Testing::smallMetadata()},
        Unchanged{"LengthsOfAnySize",
                  join({Testing::standardPrimer(), Testing::set(preface, 1, {}, 9),
                        Testing::set(structuralKey(Testing::contentStorageSet), 2, {}, 1)})},
        Unchanged{"TagsOfItsOwn",
                  join({Testing::primer({{0x8000, Testing::instanceUIDLabel()},
                                         {0x7000, Testing::standardLabels()[3].second}}),
                        klv(preface, join({property(0x8000, id(1)), property(0x7000, {1, 3})}))})},
        Unchanged{"OneLabelUnderTwoTags",
                  join({Testing::primer({{0x3C0A, Testing::instanceUIDLabel()},
                                         {0x9000, Testing::instanceUIDLabel()}}),
                        Testing::set(preface, 1),
                        klv(structuralKey(Testing::contentStorageSet), property(0x9000, id(2)))})},
        Unchanged{"UnknownMisplacedAndUnfitProperties",
                  join({Testing::standardPrimer(),
                        Testing::set(preface, 1,
                                     {property(0x7FFF, {1, 2, 3}), property(0x3B02, {1}),
                                      property(0x4801, {0, 0, 0, 5}), property(0xFFF0, {}),
                                      property(0x3B05, {1, 3}), property(0x3B05, {1, 2})})})},
        Unchanged{"ProductVersionsOfNineAndTenBytes",
                  join({Testing::primer(
                            {{Testing::instanceUIDTag, Testing::instanceUIDLabel()},
                             {0x3C03, hex("06.0e.2b.34.01.01.01.02.05.20.07.01.04.00.00.00")},
                             {0x3C07, hex("06.0e.2b.34.01.01.01.02.05.20.07.01.0a.00.00.00")}}),
                        Testing::set(preface, 1),
                        Testing::set(structuralKey(Testing::identificationSet), 3,
                                     {property(0x3C03, {0, 1, 0, 2, 0, 3, 0, 4, 1}),
                                      property(0x3C07, {0, 1, 0, 2, 0, 3, 0, 4, 0, 1})})})},
        Unchanged{"InstanceUIDInTheEnd",
                  join({Testing::standardPrimer(),
                        klv(preface, join({property(0x3B05, {1, 3}), property(0x3C0A, id(1))}))})},
        Unchanged{"SetsOutsideTheTree",
                  with(Testing::set(structuralKey(Testing::identificationSet), 3))},
        Unchanged{"ADarkGroup", with(Testing::set(darkKey, 9, {property(0x8001, {1, 2})}, 5))},
        Unchanged{"DarkSets", with(join({klv(privateKey, {9, 8, 7}, 5), klv(darkKey, {}, 1),
                                         klv(darkKey, property(0x8001, {1}), 9)}))},
        Unchanged{"ASetThatDoesNotParse", with(klv(preface, {1, 2, 3}))}),
    Testing::nameOfCase<Unchanged>);

TEST(HeaderMetadataWriter, writesTheTreeOfThePrefaceFirst) {
    const Bytes storage = Testing::set(structuralKey(Testing::contentStorageSet), 2);
    const Bytes owner = Testing::set(preface, 1, {property(0x3B03, id(2))});
    const Bytes other = Testing::set(structuralKey(Testing::identificationSet), 3);
    const Bytes dark = klv(privateKey, {1});
    ReadBack back(MxfBuilder().add(
        Testing::headerPartition(join({Testing::standardPrimer(), dark, storage, other, owner}))));
    EXPECT_EQ(written(back.metadata()),
              join({Testing::standardPrimer(), owner, storage, other, dark}));
}

TEST(HeaderMetadataWriter, leavesFillOut) {
    const Bytes sets = Testing::smallSets();
    ReadBack back(MxfBuilder().add(Testing::headerPartition(
        join({Testing::standardPrimer(), Testing::fill(30), sets, Testing::fill(0, 1, 1)}))));
    EXPECT_EQ(written(back.metadata()), Testing::smallMetadata());
}

TEST(HeaderMetadataWriter, addsTheTagsThatAreUsedBehindThoseThatAreThere) {
    Model model;
    auto& primer = model.partition.partitionDictionary();
    const Bytes unused = hex("06.0e.2b.34.01.01.01.01.0e.7f.01.02.03.00.00.00");
    primer.add(Types::LocalTag(0x9000), Types::UniversalLabel(Types::ByteView{unused.data(), 16}));
    auto& set = model.set("Preface", 1);
    model.value(set, "FormatVersion", Types::VersionType(1, 3));
    const auto labelOf = [](unsigned tag) {
        const auto& labels = Testing::standardLabels();
        return std::find_if(labels.begin(), labels.end(),
                            [tag](const auto& entry) { return entry.first == tag; })
            ->second;
    };
    const Bytes one(15, 0);
    EXPECT_EQ(
        written(model.partition),
        join({Testing::primer({{0x9000, unused},
                               {0x3C0A, Testing::instanceUIDLabel()},
                               {0x3B05, labelOf(0x3B05)}}),
              klv(preface, join({property(0x3C0A, join({one, {1}})), property(0x3B05, {1, 3})}))}));
}

TEST(HeaderMetadataWriter, addsStaticTagsThatThePrimerLackedInTheFile) {
    const Bytes sets = Testing::smallSets();
    ReadBack back(MxfBuilder().add(Testing::headerPartition(join({primerOf({0x3B05}), sets}))));
    EXPECT_EQ(written(back.metadata()), join({primerOf({0x3B05, 0x3C0A, 0x3B02, 0x3B03}), sets}));
}

TEST(HeaderMetadataWriter, generatesNoTagThatADarkSetUses) {
    Model model;
    model.set("Preface", 1);
    model.darkSet(Model::darkKey(), 4, std::string("\xFF\xFF\0\x01x", 5));
    written(model.partition);
    auto& primer = model.partition.partitionDictionary();
    std::array<Types::u8, 16> unknown{};
    EXPECT_EQ(primer.findOrGenerate(Types::UniversalLabel(unknown)).value(), 0xFFFE);
}

TEST(HeaderMetadataWriter, writesNoSetsAtAll) {
    Model model;
    EXPECT_EQ(written(model.partition), Testing::primer({}));
}

TEST(HeaderMetadataWriter, refusesBeforeItWrites) {
    Model model;
    auto& set = model.set("Identification", 1);
    model.value(set, "ApplicationName",
                Types::UTF16String(Templates::basic_string<unsigned short>(32768, 'x').c_str()));
    const std::string message =
        Testing::messageOf([&] { const HeaderMetadataWriter writer(model.partition); });
    EXPECT_NE(message.find("65536 bytes"), std::string::npos) << message;
}

TEST(HeaderMetadataWriter, refusesDarkSetsThatWouldBeSomethingElse) {
    const Bytes packKey = hex("06.0e.2b.34.02.05.01.01.0d.01.02.01.01.03.04.00");
    Bytes fillKey = Testing::fill(0);
    fillKey.resize(16);
    for (const Bytes& key : {packKey, Testing::primerKey(), Testing::indexSegmentKey(),
                             Testing::essenceKey(), fillKey, Bytes(16, 0)}) {
        Model model;
        std::array<unsigned char, 16> bytes{};
        std::copy(key.begin(), key.end(), bytes.begin());
        model.darkSet(bytes, 4, "x");
        const std::string message =
            Testing::messageOf([&] { const HeaderMetadataWriter writer(model.partition); });
        EXPECT_NE(message.find("the dark set has the key " +
                               Platform::toUtf8(KLV::Key(bytes).toString())),
                  std::string::npos)
            << message;
    }
}

TEST(HeaderPartition, isPackMetadataAndFill) {
    ReadBack back(MxfBuilder().add(Testing::headerPartition()));
    const Bytes small = Testing::smallMetadata();
    auto& metadata = back.metadata();
    for (const unsigned kag : {0U, 1U, 16U, 256U, 512U, 1U << 20}) {
        SCOPED_TRACE(kag);
        const auto packFill = fillSize(108, kag);
        const auto setsFill = fillSize(small.size(), kag);
        const Bytes packBytes =
            klv(hex("06.0e.2b.34.02.05.01.01.0d.01.02.01.01.02.04.00"),
                join({number(1, 2), number(3, 2), number(kag, 4), number(0, 24),
                      number(small.size() + setsFill, 8), number(0, 8), number(0, 4), number(0, 8),
                      number(0, 4), Testing::headerPartition().operationalPattern,
                      Testing::batch({}, 16)}));
        EXPECT_EQ(writtenPartition(metadata, closedAndComplete(kag)),
                  join({packBytes, packFill == 0 ? Bytes() : Testing::fill(packFill - 20), small,
                        setsFill == 0 ? Bytes() : Testing::fill(setsFill - 20)}));
    }
}

TEST(HeaderPartition, listsEssenceContainersAndIsAlwaysAHeader) {
    Model model;
    model.set("Preface", 1);
    PartitionPack pack = closedAndComplete(512);
    pack.kind = PartitionKind::footer;
    for (const Types::u8 last : {Types::u8{1}, Types::u8{2}}) {
        std::array<Types::u8, 16> label{};
        label[15] = last;
        pack.essenceContainers.push_back(Types::UniversalLabel(label));
    }
    ReadBack back(writtenPartition(model.partition, pack));
    const PartitionPack& read = back.file.partitions()[0].pack;
    EXPECT_EQ(read.kind, PartitionKind::header);
    EXPECT_EQ(read.status, PartitionStatus::closedComplete);
    EXPECT_EQ(read.kagSize, 512U);
    EXPECT_EQ(read.operationalPattern, pack.operationalPattern);
    EXPECT_EQ(read.essenceContainers, pack.essenceContainers);
    EXPECT_EQ(back.metadata().size(), 1U);
    EXPECT_TRUE(back.read.isWhole);
    EXPECT_EQ(back.read.begin % 512, 0U);
    EXPECT_EQ(back.read.end, back.bytes.size());
    EXPECT_EQ(back.bytes.size() % 512, 0U);
    EXPECT_EQ(back.warnings.lines(), "");
}

TEST(HeaderPack, hasWhatThePrefaceSays) {
    Metadata::PartitionMetadata metadata(MetaMetadata::Dictionary::builtIn());
    auto& set = Metadata::createSet(metadata, "Preface");
    const PartitionPack empty = headerPack(set);
    EXPECT_EQ(empty.kind, PartitionKind::header);
    EXPECT_EQ(empty.status, PartitionStatus::closedComplete);
    EXPECT_EQ(empty.operationalPattern, Types::UniversalLabel());
    EXPECT_TRUE(empty.essenceContainers.empty());
    EXPECT_EQ(empty.kagSize, 1U);

    const Types::UniversalLabel pattern(std::array<Types::u8, 16>{6, 1});
    const Types::UniversalLabel container(std::array<Types::u8, 16>{6, 2});
    Metadata::setValue(set, "OperationalPattern", pattern);
    Metadata::setItems<Types::UniversalLabel>(set, "EssenceContainers", {container, pattern});
    const PartitionPack pack = headerPack(set, 512);
    EXPECT_EQ(pack.majorVersion, 1);
    EXPECT_EQ(pack.minorVersion, 3);
    EXPECT_EQ(pack.kagSize, 512U);
    EXPECT_EQ(pack.operationalPattern, pattern);
    ASSERT_EQ(pack.essenceContainers.size(), 2U);
    EXPECT_EQ(pack.essenceContainers[0], container);
}

} // namespace
} // namespace Corvid::mxf
