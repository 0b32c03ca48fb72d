#include "XMLBuilder/XMLBuilder.h"
#include "XMLBuilder/json/MetadataJson.h"
#include "editing/DocumentMetadata.h"
#include "editing/RoundTrip.h"
#include "editing/WrittenDocument.h"
#include "host/base/Exceptions.h"
#include "host/dataio/Memory.h"
#include "host/mxf/HeaderMetadataWriter.h"
#include "host/xmlutils/InvalidCharacters.h"
#include "tests/mxf/ReadBack.h"
#include "tests/support/MemoryBounds.h"
#include "tests/support/PeakMemory.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/SmallStack.h"
#include "tools/corvid/get/AnswerText.h"
#include "tools/corvid/get/Question.h"
#include "tools/corvid/input/ReadSummary.h"
#include "tools/corvid/page/WritePage.h"
#include "tools/corvid/reports/CheckJson.h"
#include "tools/corvid/terminal/Messages.h"

#include <functional>
#include <gmock/gmock.h>
#include <xercesc/dom/DOM.hpp>

namespace Corvid::Testing {
namespace {

class NoWarnings : public mxf::WarningSink {
public:
    void warn(const mxf::Warning&) override {}
};

mxf::HeaderMetadata readFile(const Bytes& bytes,
                             const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary =
                                 MetaMetadata::Dictionary::builtIn()) {
    NoWarnings warnings;
    return mxf::File(Templates::auto_ptr<DataIO::RandomAccessSource>(
                         new DataIO::MemorySource(bytes.data(), bytes.size())),
                     dictionary, warnings)
        .readMetadata();
}

constexpr std::size_t fileSize = 200000;
constexpr std::uint32_t mostSaid = 0xFFFFFFFF;
constexpr unsigned char filmDescriptorSet = 0x48; // has arrays of bytes
constexpr unsigned char jpeg2000Set = 0x5A;
constexpr unsigned unknownTag = 0x7777;
constexpr unsigned channelStatusTag = 0x3D10; // an array of bytes

Bytes darkKey() { return hex("06.0e.2b.34.02.05.01.01.0f.0f.0f.0f.0f.0f.0f.0f"); }
Bytes darkGroupKey() { return hex("06.0e.2b.34.02.53.01.01.0f.0f.0f.0f.0f.0f.0f.0f"); }

/// Some identifier, one of its own for each number.
Bytes identifier(std::size_t number) {
    return join({hex("3b9a1c5e 7d204f61 8e43b2a5"), Testing::number(number, 4)});
}

/// What make(0), make(1) and so on give, until it is as much as a hostile file has.
template <class Make> Bytes many(Make make, std::size_t size = fileSize) {
    Bytes bytes;
    for (std::size_t i = 0; bytes.size() < size; ++i) {
        const Bytes next = make(i);
        bytes.insert(bytes.end(), next.begin(), next.end());
    }
    return bytes;
}

Bytes many(const Bytes& item, std::size_t size = fileSize) {
    return many([&](std::size_t) { return item; }, size);
}

/// A file of the standard primer, a Preface and other sets.
Bytes fileOf(const Bytes& sets, const Bytes& primer = standardPrimer()) {
    return MxfBuilder().add(headerPartition(join({primer, smallSets(), sets}))).build();
}

/// Sets with many times the same property, as many as a set may have.
Bytes setsOf(unsigned char number, const Bytes& property) {
    return many(set(structuralKey(number), 9, {many(property, 30000 * property.size())}));
}

Bytes collection(unsigned tag, std::uint32_t count, std::uint32_t itemSize,
                 const Bytes& items = {}) {
    return property(tag, join({number(count, 4), number(itemSize, 4), items}));
}

/// Sets with a collection of values that have parts.
Bytes fileOfParts(std::uint32_t items) {
    const auto sizing = hex("06.0e.2b.34.01.01.01.0a.04.01.06.03.0b.00.00.00");
    const Bytes values = repeat(1, std::size_t{3} * items);
    return fileOf(many(set(structuralKey(jpeg2000Set), 9, {collection(0x8001, items, 3, values)})),
                  primer({{instanceUIDTag, instanceUIDLabel()}, {0x8001, sizing}}));
}

struct HostileFile {
    const char* name;
    Bytes (*bytes)();
};
void PrintTo(const HostileFile& c, std::ostream* out) { *out << c.name; }

class HostileFiles : public ::testing::TestWithParam<HostileFile> {
protected:
    /// Expects that work on the file takes no more than so many times its size.
    static void expectPeak(std::size_t factor, const std::function<void(const Bytes&)>& work) {
        expectPeak(GetParam().bytes(), factor, work);
    }

    static void expectPeak(const Bytes& bytes, std::size_t factor,
                           const std::function<void(const Bytes&)>& work) {
        work(smallFile()); // what is made once per process is no part of it
        const auto peak = peakMemoryOf([&] { work(bytes); });
        if (!peak) {
            GTEST_SKIP() << "sanitizers have their own ways with memory";
        }
        EXPECT_LE(*peak, factor * bytes.size() + MemoryBounds::constant);
        RecordProperty("multiple", std::to_string(*peak / bytes.size()));
    }

private:
    static Bytes smallFile() { return MxfBuilder().add(headerPartition()).build(); }
};

void toDocument(const Bytes& bytes) {
    const auto read = readFile(bytes);
    XMLBuilder::partition2XML(read.metadata.get(), false, false);
}

class Nowhere : public DataIO::DataSink {
public:
    void write(const unsigned char*, std::size_t) override {}
};

void toText(const Bytes& bytes) {
    Nowhere sink;
    const auto read = readFile(bytes);
    if (read.metadata->find(Metadata::Structural::StructuralMetadataKeys::preface()).empty()) {
        return; // the front of a file may end before it
    }
    XMLUtils::ReplaceInvalidCharacters invalid(0);
    Editing::WrittenDocument(*read.metadata, {})
        .serialise(XMLUtils::EncodingType::utf8, XMLUtils::Layout::indented, invalid, sink);
}

void toJson(const Bytes& bytes) {
    Nowhere sink;
    const auto read = readFile(bytes);
    const auto prefaces =
        read.metadata->find(Metadata::Structural::StructuralMetadataKeys::preface());
    if (!prefaces.empty()) {
        writeJson(XMLBuilder::DocumentPlan(*read.metadata, *prefaces.front(), {}), {}, sink);
    }
}

/// A file as the verbs that report on it read it.
struct Reported {
    explicit Reported(const Bytes& bytes)
        : source(new DataIO::MemorySource(bytes.data(), bytes.size())),
          file(Templates::auto_ptr<DataIO::RandomAccessSource>(source),
               MetaMetadata::Dictionary::builtIn(), messages),
          header(file.readMetadata()) {}

    Nowhere sink;
    Tool::Messages messages{sink, false};
    DataIO::MemorySource* source;
    mxf::File file;
    mxf::HeaderMetadata header;
};

void toPage(const Bytes& bytes) {
    Reported read(bytes);
    const auto prefaces =
        read.header.metadata->find(Metadata::Structural::StructuralMetadataKeys::preface());
    if (!prefaces.empty()) {
        const auto summary = Tool::readSummary(read.file, read.header, read.messages);
        const XMLBuilder::DocumentPlan plan(*read.header.metadata, *prefaces.front(), {});
        Tool::writePage({*read.source, read.header, plan, summary, read.messages.warnings(), {}},
                        nullptr, read.sink);
    }
}

void askForEverything(const Bytes& bytes) {
    Reported read(bytes);
    Tool::Answering answering(read.file, read.header, read.messages);
    const auto all = Tool::parseQuery("**/*", *MetaMetadata::Dictionary::builtIn());
    Tool::answerLines({answering.answer(all)}, "", '\n');
}

void thereAndBack(const Bytes& bytes) {
    const auto read = readFile(bytes);
    Editing::compareWithRoundTrip(*read.metadata);
}

TEST_P(HostileFiles, takeMemoryInProportionToTheirSizeAsMetadata) {
    expectPeak(MemoryBounds::fileToMetadata, [](const Bytes& bytes) { readFile(bytes); });
}

TEST_P(HostileFiles, takeMemoryInProportionToTheirSizeAsText) {
    expectPeak(MemoryBounds::fileToText, toText);
}

TEST_P(HostileFiles, takeMemoryInProportionToTheirSizeAsJson) {
    expectPeak(MemoryBounds::fileToJson, toJson);
}

TEST_P(HostileFiles, takeMemoryInProportionToTheirSizeAsPage) {
    expectPeak(MemoryBounds::fileToPage, toPage);
}

TEST_P(HostileFiles, takeMemoryInProportionToTheirSizeAsAnswers) {
    expectPeak(MemoryBounds::fileToAnswers, askForEverything);
}

TEST_P(HostileFiles, takeMemoryInProportionToTheirSizeAsDocument) {
    expectPeak(MemoryBounds::fileToDocument, toDocument);
}

TEST_P(HostileFiles, takeMemoryInProportionToTheirSizeThereAndBack) {
    expectPeak(MemoryBounds::check, thereAndBack);
}

/// The first bytes of a hostile file are one, too.
TEST_P(HostileFiles, takeMemoryInProportionToTheirSizeHoweverSmallTheyAre) {
    const Bytes whole = GetParam().bytes();
    for (const std::size_t size : MemoryBounds::sizes) {
        const Bytes bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(
                                                             std::min(size, whole.size())));
        expectPeak(bytes, MemoryBounds::fileToMetadata, [](const Bytes& each) { readFile(each); });
        expectPeak(bytes, MemoryBounds::fileToText, toText);
        expectPeak(bytes, MemoryBounds::fileToPage, toPage);
        expectPeak(bytes, MemoryBounds::fileToAnswers, askForEverything);
        expectPeak(bytes, MemoryBounds::fileToDocument, toDocument);
        expectPeak(bytes, MemoryBounds::check, thereAndBack);
    }
}

/// The report on a file of which nothing comes back.
void reportDamage(const Bytes& bytes, std::size_t& differences, std::size_t& size) {
    class Counter : public DataIO::DataSink {
    public:
        explicit Counter(std::size_t& count) : count_(count) {}
        void write(const unsigned char*, std::size_t count) override { count_ += count; }

    private:
        std::size_t& count_;
    } sink(size);
    Tool::CheckedFile checked;
    const auto read = readFile(bytes);
    Metadata::PartitionMetadata nothing(MetaMetadata::Dictionary::builtIn());
    checked.comparison = Editing::compare(*read.metadata, nothing);
    checked.result = Tool::CheckResult::different;
    Tool::CheckJson report(sink);
    report.add(checked);
    Tool::CheckTally tally;
    tally.add(checked.result);
    report.finish(tally);
    differences = checked.comparison.differences.count();
}

TEST(DamagedFile, isReportedInProportionToItsSize) {
    const Bytes bytes = fileOf(many(klv(darkKey(), {}, 1)));
    std::size_t differences = 0;
    std::size_t size = 0;
    reportDamage(bytes, differences, size);
    EXPECT_GT(differences, 10000U);
    EXPECT_LT(size, 10 * bytes.size());
    const auto peak = peakMemoryOf([&] { reportDamage(bytes, differences, size); });
    if (!peak) {
        GTEST_SKIP() << "sanitizers have their own ways with memory";
    }
    EXPECT_LE(*peak, MemoryBounds::check * bytes.size() + MemoryBounds::constant);
    RecordProperty("multiple", std::to_string(*peak / bytes.size()));
}

const auto emptyProperty = property(unknownTag, {});

INSTANTIATE_TEST_SUITE_P(
    , HostileFiles,
    ::testing::Values(
        HostileFile{"EmptySets",
                    [] { return fileOf(many(klv(structuralKey(contentStorageSet), {}, 1))); }},
        HostileFile{"Sets",
                    [] {
                        return fileOf(many([](std::size_t i) {
                            return klv(structuralKey(contentStorageSet),
                                       property(instanceUIDTag, identifier(i)), 1);
                        }));
                    }},
        HostileFile{"SetsOfOneIdentifier",
                    [] {
                        return fileOf(many(klv(structuralKey(contentStorageSet),
                                               property(instanceUIDTag, identifier(1)), 1)));
                    }},
        HostileFile{"DarkSets", [] { return fileOf(many(klv(darkKey(), {}, 1))); }},
        HostileFile{"DarkGroups",
                    [] {
                        return fileOf(many([](std::size_t i) {
                            return klv(darkGroupKey(), property(instanceUIDTag, identifier(i)), 1);
                        }));
                    }},
        HostileFile{"UnknownProperties",
                    [] { return fileOf(setsOf(contentStorageSet, emptyProperty)); }},
        HostileFile{"PropertiesOfOtherClasses",
                    [] { return fileOf(setsOf(contentStorageSet, property(0x4802, {}))); }},
        HostileFile{"PropertiesThatRecur",
                    [] { return fileOf(setsOf(timelineTrackSet, property(0x4802, {}))); }},
        HostileFile{"PropertiesThatDoNotFit",
                    [] { return fileOf(setsOf(contentStorageSet, property(0x4B01, {}))); }},
        HostileFile{"PropertiesOfEveryTag",
                    [] {
                        const auto each = [](std::size_t i) {
                            return property(0x8000 + static_cast<unsigned>(i), {});
                        };
                        return fileOf(many(
                            set(structuralKey(contentStorageSet), 9, {many(each, 30000 * 4)})));
                    }},
        HostileFile{
            "PropertiesOfDarkGroups",
            [] { return fileOf(many(set(darkGroupKey(), 9, {many(emptyProperty, 30000 * 4)}))); }},
        HostileFile{
            "UnknownPropertiesOfBerLengths",
            [] { return fileOf(withBerLengths(setsOf(contentStorageSet, emptyProperty))); }},
        HostileFile{
            "PropertiesThatRecurOfBerLengths",
            [] { return fileOf(withBerLengths(setsOf(timelineTrackSet, property(0x4802, {})))); }},
        HostileFile{"PropertiesOfEveryTagOfBerLengths",
                    [] {
                        const auto each = [](std::size_t i) {
                            return property(0x8000 + static_cast<unsigned>(i), {});
                        };
                        return fileOf(withBerLengths(many(
                            set(structuralKey(contentStorageSet), 9, {many(each, 30000 * 4)}))));
                    }},
        HostileFile{"PropertiesOfDarkGroupsOfBerLengths",
                    [] {
                        return fileOf(withBerLengths(
                            many(set(darkGroupKey(), 9, {many(emptyProperty, 30000 * 4)}))));
                    }},
        HostileFile{"Items",
                    [] {
                        return fileOf(
                            many(set(structuralKey(filmDescriptorSet), 9,
                                     {collection(channelStatusTag, 65000, 1, repeat(1, 65000))})));
                    }},
        HostileFile{"ItemsOfParts", [] { return fileOfParts(21000); }},
        HostileFile{"FewItemsOfParts", [] { return fileOfParts(300); }},
        HostileFile{"References",
                    [] {
                        return fileOf(
                            many(set(structuralKey(prefaceSet), 9,
                                     {collection(0x3B06, 4000, 16,
                                                 many(identifier(7), std::size_t{4000} * 16))})));
                    }},
        HostileFile{"CountsOfItemsOfNothing",
                    [] {
                        return fileOf(many(set(structuralKey(prefaceSet), 9,
                                               {collection(0x3B06, mostSaid, 0),
                                                collection(channelStatusTag, mostSaid, 0)})));
                    }},
        HostileFile{"CountsOfItemsOfOneByte",
                    [] {
                        return fileOf(many(set(structuralKey(filmDescriptorSet), 9,
                                               {collection(0x3B06, mostSaid, 1),
                                                collection(channelStatusTag, mostSaid, 1)})));
                    }},
        HostileFile{"SizesOfItems",
                    [] {
                        return fileOf(many(set(structuralKey(filmDescriptorSet), 9,
                                               {collection(0x3B06, 1, mostSaid),
                                                collection(channelStatusTag, 0, mostSaid)})));
                    }},
        HostileFile{"CountOfPrimerEntries",
                    [] { return fileOf({}, primer(standardLabels(), mostSaid, mostSaid)); }},
        HostileFile{"PrimerEntries",
                    [] {
                        auto entries = standardLabels();
                        for (unsigned i = 0; entries.size() * 18 < fileSize; ++i) {
                            entries.emplace_back(0x8000 + i % 0x8000, identifier(i));
                        }
                        return fileOf({}, primer(entries));
                    }},
        HostileFile{"LengthOfASet",
                    [] { return fileOf(klv(structuralKey(contentStorageSet), {}, 9, ~0ULL)); }},
        HostileFile{"LengthOfADarkSet",
                    [] { return fileOf(klv(darkKey(), {}, 9, std::uint64_t{1} << 40)); }},
        HostileFile{"HeaderByteCount",
                    [] {
                        PartitionSpec header = headerPartition();
                        header.headerByteCount = ~0ULL;
                        return MxfBuilder().add(header).build();
                    }},
        HostileFile{"EssenceContainersOfOverlappingPacks",
                    [] {
                        PartitionSpec body = bodyPartition();
                        body.essenceContainerCount = mostSaid;
                        body.packLength = fileSize;
                        MxfBuilder builder;
                        builder.add(headerPartition(smallMetadata()));
                        for (std::size_t i = 0; i * 120 < fileSize; ++i) {
                            builder.add(body);
                        }
                        return builder.withRandomIndexPack().build();
                    }},
        HostileFile{"CutOff",
                    [] {
                        Bytes bytes = fileOf(many(klv(darkKey(), {}, 1)));
                        bytes.resize(bytes.size() / 2);
                        return bytes;
                    }}),
    nameOfCase<HostileFile>);

/// Prefaces of which each owns the next. On a small stack, calls that nest with the sets would end
/// the process after a fraction of them.
class Chain : public ::testing::Test {
protected:
#if defined(CORVID_ADDRESS_SANITIZER) || defined(CORVID_THREAD_SANITIZER)
    static constexpr std::size_t length = 80000; // on a larger stack
#else
    static constexpr std::size_t length = 40000;
#endif

    static Bytes metadata() {
        std::vector<Bytes> sets = {standardPrimer()};
        for (std::size_t i = 0; i != length; ++i) {
            sets.push_back(
                klv(structuralKey(prefaceSet), join({property(instanceUIDTag, identifier(i)),
                                                     property(0x3B03, identifier(i + 1))})));
        }
        return join(sets);
    }
    static Bytes file() { return MxfBuilder().add(headerPartition(metadata())).build(); }
};

TEST_F(Chain, isReadAndWrittenAgainOnASmallStack) {
    onSmallStack([] {
        const auto read = readFile(file());
        ASSERT_EQ(read.metadata->size(), length);
        DataIO::Memory::MemoryDataSink sink;
        mxf::HeaderMetadataWriter(*read.metadata).write(sink);
        EXPECT_EQ(Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize()), metadata());
    });
}

TEST_F(Chain, comesBackFromXmlOnASmallStack) {
    onSmallStack([] {
        const auto read = readFile(file());
        const auto comparison = Editing::compareWithRoundTrip(*read.metadata);
        EXPECT_EQ(comparison.sets, length);
        EXPECT_EQ(comparison.properties, 2 * length);
        EXPECT_TRUE(comparison.differences.empty());
    });
}

TEST_F(Chain, withReferencesAsValuesIsRefusedOnASmallStack) {
    onSmallStack([] {
        const auto read = readFile(file());
        EXPECT_THAT(messageOf([&] { XMLBuilder::partition2XML(read.metadata.get(), true, false); }),
                    testing::HasSubstr("strong references nest deeper than 256 sets"));
    });
}

} // namespace
} // namespace Corvid::Testing
