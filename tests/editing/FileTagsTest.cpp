#include "editing/RoundTrip.h"
#include "host/dataio/MemorySource.h"
#include "host/mxf/File.h"
#include "tests/editing/Differences.h"
#include "tests/support/MxfBuilder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>

using namespace Corvid;
using namespace Corvid::Testing;
using ::testing::Each;
using ::testing::IsEmpty;

namespace {

using Entries = std::vector<std::pair<unsigned, Bytes>>;
using Properties = std::vector<Bytes>;

/// What the sets of a file have besides their InstanceUIDs.
struct Contents {
    Entries primer;
    Properties preface;
    Properties contentStorage;
    Properties dark; ///< in a set that the dictionary does not know
};

constexpr unsigned lastModifiedTag = 0x3B02;
constexpr unsigned versionTag = 0x3B05;
constexpr unsigned trackNameTag = 0x4802;

Bytes labelOf(unsigned tag) {
    const auto& labels = standardLabels();
    return std::find_if(labels.begin(), labels.end(),
                        [tag](const auto& each) { return each.first == tag; })
        ->second;
}

Bytes otherVersion(Bytes label) {
    label[7] = 0x7E;
    return label;
}

Bytes unknownLabel() { return hex("06.0e.2b.34.01.01.01.01.0e.7f.7f.7f.01.02.03.04"); }
Bytes darkKey() { return hex("06.0e.2b.34.02.53.01.01.0e.7f.7f.7f.01.02.03.00"); }

const Bytes timestamp = hex("07.e8.02.1d.0c.00.00.00");
const Bytes unfit = hex("01.02.03");

/// @param metadata  the primer pack and the sets.
std::vector<Editing::Difference> differencesOf(const Bytes& metadata) {
    const Bytes file = MxfBuilder().add(headerPartition(metadata)).build();
    mxf::NoWarnings warnings;
    const auto read = mxf::File(Templates::auto_ptr<DataIO::RandomAccessSource>(
                                    new DataIO::MemorySource(file.data(), file.size())),
                                MetaMetadata::Dictionary::builtIn(), warnings)
                          .readMetadata();
    const auto differences = Editing::compareWithRoundTrip(*read.metadata).differences;
    return {differences.begin(), differences.end()};
}

std::vector<Editing::Difference> differencesOf(const Contents& contents) {
    Entries entries{{instanceUIDTag, instanceUIDLabel()}};
    entries.insert(entries.end(), contents.primer.begin(), contents.primer.end());
    return differencesOf(join({primer(entries), set(structuralKey(prefaceSet), 1, contents.preface),
                               set(structuralKey(contentStorageSet), 2, contents.contentStorage),
                               set(darkKey(), 3, contents.dark)}));
}

struct Case {
    const char* name;
    Contents contents;
};

void PrintTo(const Case& each, std::ostream* out) { *out << each.name; }

class FileTags : public ::testing::TestWithParam<Case> {};

TEST_P(FileTags, comeBackWithTheirMeaning) {
    const auto differences = differencesOf(GetParam().contents);
    EXPECT_THAT(differences, IsEmpty()) << linesOf(differences);
}

INSTANTIATE_TEST_SUITE_P(
    , FileTags,
    ::testing::Values(
        Case{"UnfitValueUnderADynamicTag",
             {{{0x8001, labelOf(lastModifiedTag)}}, {property(0x8001, unfit)}, {}, {}}},
        Case{"UnfitValueUnderADynamicTagBesideTheStaticOneWithAnotherLabel",
             {{{0x8001, labelOf(lastModifiedTag)}, {lastModifiedTag, unknownLabel()}},
              {property(0x8001, unfit), property(lastModifiedTag, unfit)},
              {},
              {property(lastModifiedTag, unfit), property(0x8001, unfit)}}},
        Case{"UnfitValueOfAnotherVersionBesideAStaticTagInADarkSet",
             {{{0x8001, otherVersion(labelOf(lastModifiedTag))}},
              {property(0x8001, unfit)},
              {},
              {property(lastModifiedTag, timestamp)}}},
        Case{"UnfitValueOfAnotherVersionBesideOneOfTheDictionarys",
             {{{0x8001, otherVersion(labelOf(lastModifiedTag))}},
              {property(lastModifiedTag, unfit)},
              {property(0x8001, unfit)},
              {}}},
        Case{"StaticTagWithAnUnknownLabel",
             {{{lastModifiedTag, unknownLabel()}},
              {property(lastModifiedTag, unfit)},
              {},
              {property(lastModifiedTag, unfit)}}},
        Case{"StaticTagWithTheLabelOfAnother",
             {{{lastModifiedTag, labelOf(versionTag)}, {versionTag, labelOf(lastModifiedTag)}},
              {property(lastModifiedTag, hex("0103")), property(versionTag, timestamp)},
              {property(lastModifiedTag, unfit)},
              {property(versionTag, unfit)}}},
        Case{"StaticTagWithTheLabelOfAMisplacedProperty",
             {{{lastModifiedTag, labelOf(trackNameTag)}},
              {property(lastModifiedTag, hex("00.61")), property(lastModifiedTag, unfit)},
              {},
              {property(trackNameTag, unfit)}}}),
    [](const auto& each) { return std::string(each.param.name); });

/// Which of two versions a property that fits its type had is in no document.
TEST(FileTagsAlone, ofOneLabelInTwoVersionsComeBackWithOne) {
    const auto differences = differencesOf({{{0x8001, otherVersion(labelOf(lastModifiedTag))}},
                                            {property(lastModifiedTag, timestamp)},
                                            {property(0x8001, timestamp)},
                                            {}});
    EXPECT_THAT(kindsOf(differences), ::testing::ElementsAre(Editing::DifferenceKind::labelVersion))
        << linesOf(differences);
}

TEST(FileTagsAlone, inWhateverPrimerLoseNothingButVersions) {
    const std::vector<Bytes> labels = {
        labelOf(lastModifiedTag), labelOf(versionTag), otherVersion(labelOf(lastModifiedTag)),
        labelOf(trackNameTag),    unknownLabel(),      otherVersion(unknownLabel()),
        instanceUIDLabel()};
    const unsigned tags[] = {lastModifiedTag, versionTag, trackNameTag, 0x8001, 0x8002, 0xFFFF};
    const std::vector<Bytes> values = {timestamp, unfit, {}, hex("0061.0062"), Bytes(16, 1)};
    std::mt19937 random(377);
    const auto pick = [&random](const auto& from) { return from[random() % std::size(from)]; };
    for (int round = 0; round != 500; ++round) {
        Contents contents;
        for (auto count = random() % 7; count != 0; --count) {
            contents.primer.emplace_back(pick(tags), pick(labels));
        }
        for (Properties* each : {&contents.preface, &contents.contentStorage, &contents.dark}) {
            for (auto count = random() % 4; count != 0; --count) {
                each->push_back(property(pick(tags), pick(values)));
            }
        }
        const auto differences = differencesOf(contents);
        EXPECT_THAT(kindsOf(differences), Each(Editing::DifferenceKind::labelVersion))
            << "round " << round << "\n"
            << linesOf(differences);
    }
}

TEST(FileTagsAlone, ofAnIdentifierThatIsNoneComeBackWithIt) {
    for (const Bytes& value : {Bytes(), unfit}) {
        const auto differences = differencesOf(
            join({standardPrimer(), set(structuralKey(prefaceSet), 1),
                  klv(structuralKey(contentStorageSet), property(instanceUIDTag, value))}));
        EXPECT_THAT(differences, IsEmpty()) << linesOf(differences);
    }
}

/// The document has the dark set where the Preface refers to it, and says nothing of its values.
TEST(FileTagsAlone, ofASetThatSharesItsIdentifierWithADarkSetComeBack) {
    const auto differences = differencesOf(join(
        {standardPrimer(),
         set(structuralKey(prefaceSet), 1, {property(0x3B06, batch({Testing::uuid(2U)}, 16))}),
         set(darkKey(), 2),
         set(structuralKey(identificationSet), 2, {property(0x3C01, hex("0041.0000.0042"))})}));
    EXPECT_THAT(differences, IsEmpty()) << linesOf(differences);
}

} // namespace
