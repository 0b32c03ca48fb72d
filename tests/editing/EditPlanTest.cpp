#include "editing/apply/ClipEditor.h"

#include "editing/DocumentMetadata.h"
#include "editing/change/FindChanges.h"
#include "editing/change/Guard.h"
#include "host/types/FixedBytes.h"
#include "tests/editing/EditedClip.h"
#include "tests/support/Paths.h"

#include <algorithm>
#include <fstream>
#include <gmock/gmock.h>

namespace Corvid::Testing {
namespace {

using Editing::CopyChoice;
using Editing::EditOptions;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

/// What the metadata of a copy says where copies differ.
struct Says {
    std::u16string_view trackName = u"Sound";
    unsigned year = 2020; ///< of the Preface's LastModifiedDate
    unsigned trackID = 7;
    std::vector<unsigned> identifications = {3};
};

Bytes metadata(const Says& says = {}) {
    std::vector<Bytes> references;
    std::vector<Bytes> sets{standardPrimer(), {}};
    for (const unsigned each : says.identifications) {
        references.push_back(uuid(each));
        sets.push_back(
            set(structuralKey(identificationSet), each, {property(0x3C01, utf16(u"A company"))}));
    }
    sets[1] = set(structuralKey(prefaceSet), 1,
                  {property(0x3B02, join({number(says.year, 2), hex("0101000000 00")})),
                   property(0x3B03, uuid(2)), property(0x3B06, batch(references, 16))});
    sets.push_back(set(structuralKey(contentStorageSet), 2));
    sets.push_back(
        set(structuralKey(timelineTrackSet), 4,
            {property(0x4801, number(says.trackID, 4)), property(0x4802, utf16(says.trackName))}));
    sets.push_back(fill(600));
    return join(sets);
}

/// A file with a closed header and footer.
Bytes clipOf(const Bytes& inHeader = metadata(), const Bytes& inFooter = metadata()) {
    return MxfBuilder()
        .add(headerPartition(inHeader))
        .add(footerPartition(inFooter))
        .withRandomIndexPack()
        .build();
}

std::string refusalOf(const Bytes& clip, const std::string& document,
                      const EditOptions& options = {}) {
    EditedClip edited(clip);
    return messageOf([&] { edited.plan(document, options); });
}

/// What the copies of a clip say less than another.
std::string changesIn(const Bytes& before, const Bytes& after, std::size_t partition) {
    LayoutOf was(before, partition);
    LayoutOf is(after, partition);
    return linesOf(
        Editing::findChanges(was.layout, is.layout, *MetaMetadata::Dictionary::builtIn()));
}

const std::string soundToMusic(const Bytes& clip) {
    return replaced(documentOf(clip), ">Sound<", ">Music<");
}

TEST(EditPlan, changesEveryCopy) {
    EditedClip clip(clipOf());
    const auto plan = clip.plan(soundToMusic(clip.bytes));
    EXPECT_THAT(plan.copies, ElementsAre(0U, 1U));
    const Bytes after = clip.after(plan);
    for (const std::size_t partition : {0U, 1U}) {
        EXPECT_EQ(changesIn(clip.bytes, after, partition), "changed TimelineTrack TrackName\n");
    }
    EXPECT_EQ(after.size(), clip.bytes.size());
}

TEST(EditPlan, changesTheCopyThatIsChosenAndListsTheOthers) {
    EditedClip clip(clipOf());
    EditOptions options;
    options.copies = {CopyChoice::Kind::header};
    const auto plan = clip.plan(soundToMusic(clip.bytes), options);
    EXPECT_THAT(plan.copies, ElementsAre(0U));
    EXPECT_THAT(plan.left, ElementsAre(1U));
    const Bytes after = clip.after(plan);
    EXPECT_EQ(changesIn(clip.bytes, after, 0), "changed TimelineTrack TrackName\n");
    EXPECT_EQ(changesIn(clip.bytes, after, 1), "");
}

TEST(EditPlan, refusesACopyWhereTheOldValueDiffers) {
    Says other;
    other.trackName = u"Noise";
    const Bytes clip = clipOf(metadata(other));
    EXPECT_THAT(
        refusalOf(clip, soundToMusic(clip)),
        AllOf(HasSubstr("partition 0 (header): set TimelineTrack"),
              HasSubstr("property TrackName: has 'Noise', expected 'Sound' as in the copy")));
}

TEST(EditPlan, refusesACopyThatIsNotFoundWhereItIsSaidToBe) {
    PartitionSpec header = headerPartition(metadata());
    header.packLength = 5000;
    const Bytes clip =
        MxfBuilder().add(header).add(footerPartition(metadata())).withRandomIndexPack().build();
    EXPECT_THAT(refusalOf(clip, soundToMusic(clip)),
                HasSubstr("partition 0 (header): HeaderByteCount is "));
    EditOptions options;
    options.copies.kind = CopyChoice::Kind::footer;
    EXPECT_EQ(refusalOf(clip, soundToMusic(clip), options), "");
}

TEST(EditPlan, recordsTheEditInEachCopyWhateverDatesAndIdentificationsItHas) {
    Says open;
    open.year = 1999;
    open.identifications = {3, 5};
    EditedClip clip(clipOf(metadata(open)));
    EditOptions options;
    options.modification = testModification();
    const auto plan = clip.plan(soundToMusic(clip.bytes), options);
    const Bytes after = clip.after(plan);
    for (const std::size_t partition : {0U, 1U}) {
        EXPECT_EQ(changesIn(clip.bytes, after, partition),
                  "changed Preface GenerationUID IdentificationList FileLastModified\n"
                  "added Identification\n"
                  "changed TimelineTrack TrackName GenerationUID\n");
        LayoutOf copy(after, partition);
        const auto& preface = copy.layout.items()[copy.set(1)];
        auto properties = copy.layout.properties(preface);
        while (const auto property = properties.next()) {
            if (property->tag == 0x3B02) {
                EXPECT_EQ(copyOf(property->value), hex("07e8021d0c1e2d00"));
            } else if (property->tag == 0x3B06) {
                EXPECT_EQ(property->value.size, partition == 0 ? 8U + 3 * 16 : 8U + 2 * 16);
            }
        }
    }
}

TEST(EditPlan, recordsNothingWhereNothingChanges) {
    EditedClip clip(clipOf());
    EditOptions options;
    options.modification = testModification();
    const auto plan = clip.plan(documentOf(clip.bytes), options);
    EXPECT_TRUE(plan.isEmpty());
    EXPECT_TRUE(plan.rewrite.isEmpty());
}

TEST(EditPlan, refusesTechnicalChangesUnlessTheyAreAllowed) {
    EditedClip clip(clipOf());
    const auto document = replaced(documentOf(clip.bytes), ">7<", ">8<");
    EXPECT_THAT(refusalOf(clip.bytes, document), HasSubstr("TimelineTrack/TrackID;"));
    EditOptions options;
    options.allowsTechnical = true;
    EXPECT_EQ(linesOf(clip.plan(document, options).changes), "changed TimelineTrack TrackID\n");
}

TEST(EditPlan, refusesTheDocumentOfAnotherClip) {
    Bytes other = metadata();
    const Bytes instance = uuid(1);
    for (auto at = std::search(other.begin(), other.end(), instance.begin(), instance.end());
         at != other.end(); at = std::search(at, other.end(), instance.begin(), instance.end())) {
        *(at + 3) ^= 1;
    }
    EXPECT_THAT(refusalOf(clipOf(), documentOf(clipOf(other, other))),
                HasSubstr("the document is of another clip"));
}

TEST(EditPlan, refusesTheDocumentOfAnOlderState) {
    Says newer;
    newer.identifications = {3, 5};
    const Bytes clip = clipOf(metadata(newer), metadata(newer));
    EXPECT_THAT(refusalOf(clip, documentOf(clipOf())), HasSubstr("older state of the clip"));
    EXPECT_THAT(refusalOf(clipOf(), documentOf(clip)), Not(HasSubstr("older")));
}

TEST(EditPlan, putsANewSetAfterItsOwnerAndTakesItAwayAgain) {
    EditedClip clip(clipOf());
    Says more;
    more.identifications = {3, 5};
    const auto longer = documentOf(clipOf(metadata(more), metadata(more)));
    const Bytes after = clip.after(longer);
    LayoutOf copy(after);
    EXPECT_EQ(copy.set(5), copy.set(1) + 1);
    EXPECT_EQ(changesIn(clip.bytes, after, 1),
              "changed Preface IdentificationList\nadded Identification\n");
    EditedClip changed(after);
    const auto wanted = EditedClip(clip.bytes).editor.readMetadata();
    const Bytes back = changed.after(changed.editor.plan(*wanted, {}));
    EXPECT_EQ(changesIn(clip.bytes, back, 0), "");
    EXPECT_EQ(changesIn(clip.bytes, back, 1), "");
}

TEST(EditPlan, addsMoreSetsThanTheClipHas) {
    EditedClip clip(clipOf());
    Says more;
    more.identifications = {3, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20};
    const auto longer = documentOf(clipOf(metadata(more), metadata(more)));
    const std::string changes = linesOf(clip.plan(longer).changes);
    EXPECT_EQ(std::count(changes.begin(), changes.end(), '\n'), 11) << changes;
}

TEST(EditPlan, keepsWhatADocumentLeavesOutOnPurpose) {
    EditedClip clip(clipOf());
    Editing::DocumentContent part;
    part.start = Types::UUID({uuid(3).data(), 16});
    const auto document = replaced(documentOf(clip.bytes, part), ">A company<", ">Another<");
    EXPECT_THAT(document, Not(HasSubstr("<s377m:Preface")));
    EXPECT_EQ(linesOf(clip.plan(document).changes),
              "changed Identification ApplicationSupplierName\n");
}

/// A file with a header that says little, open and incomplete, and a closed footer.
Bytes openClip(const Bytes& inFooter = metadata(), unsigned char footerStatus = 4,
               std::optional<std::uint64_t> footerOffset = 0) {
    Says little;
    little.trackName = u"?";
    little.year = 0;
    little.identifications = {};
    PartitionSpec header = headerPartition(metadata(little));
    header.status = 1;
    header.footerPartition = footerOffset;
    header.operationalPattern = hex("06.0e.2b.34.04.01.01.01.0d.01.02.01.01.01.09.00");
    header.behindMetadata = klv(essenceKey(), repeat(0xEE, 500));
    PartitionSpec footer = footerPartition(inFooter);
    footer.status = footerStatus;
    return MxfBuilder().add(header).add(footer).withRandomIndexPack().build();
}

EditOptions closing() {
    EditOptions options;
    options.closesHeader = true;
    return options;
}

TEST(EditPlan, closesAnOpenHeader) {
    const Bytes clip = openClip();
    const Bytes after = EditedClip(clip).after(documentOf(clip), closing());
    Rewritable file(after);
    EXPECT_EQ(linesOf(Editing::findChanges(file.file.layout(0), file.file.layout(1),
                                           *MetaMetadata::Dictionary::builtIn())),
              "");
    const mxf::PartitionPack& header = file.file.partitions()[0].pack;
    const mxf::PartitionPack& footer = file.file.partitions()[1].pack;
    EXPECT_EQ(header.status, mxf::PartitionStatus::closedComplete);
    EXPECT_EQ(header.footerPartition, footer.thisPartition);
    EXPECT_EQ(header.operationalPattern, footer.operationalPattern);
    EXPECT_EQ(changesIn(clip, after, 1), "");
    EXPECT_EQ(after.size(), clip.size()) << "there is room";
    EXPECT_TRUE(EditedClip(after).plan(documentOf(after), closing()).isEmpty());
}

TEST(EditPlan, closesAnOpenHeaderThatMustGrow) {
    Says much;
    much.trackName = std::u16string_view(u"A name that is longer than all that the header has "
                                         u"room for, which is not much; it goes on and on, and it "
                                         u"has more words than anybody cares to read in a name; "
                                         u"but it has its use where a test needs to be sure that "
                                         u"the header metadata grows and the footer moves");
    const Bytes clip = openClip(metadata(much), 4, std::nullopt);
    const auto document = replaced(documentOf(clip), ">A company<", ">Another<");
    EditOptions options = closing();
    options.modification = testModification();
    options.reserve = 0;
    const auto plan = EditedClip(clip).plan(document, options);
    EXPECT_THAT(plan.copies, ElementsAre(0, 1));
    const Bytes after = EditedClip(clip).after(plan);
    EXPECT_GT(after.size(), clip.size());
    Rewritable file(after);
    EXPECT_EQ(linesOf(Editing::findChanges(file.file.layout(0), file.file.layout(1),
                                           *MetaMetadata::Dictionary::builtIn())),
              "");
    EXPECT_EQ(file.file.partitions()[0].pack.footerPartition,
              file.file.partitions()[1].pack.thisPartition);
    EXPECT_THAT(documentOf(after), HasSubstr(">Another<"));
}

TEST(EditPlan, closesNoHeaderWithoutAClosedFooter) {
    const Bytes open = openClip(metadata(), 3);
    EXPECT_THAT(refusalOf(open, documentOf(open), closing()), HasSubstr("can't be closed"));
    const Bytes empty = openClip({});
    EXPECT_THAT(refusalOf(empty, documentOf(empty), closing()), HasSubstr("can't be closed"));
    const Bytes closed = clipOf();
    EXPECT_TRUE(EditedClip(closed).plan(documentOf(closed), closing()).isEmpty());
}

TEST(EditPlan, closesTheHeadersOfSamples) {
    if (samplesDir().empty()) {
        GTEST_SKIP() << "there are no samples";
    }
    for (const char* name :
         {"bbc__open-incomplete-header", "freemxf.org__fixture", "metarex.media__all",
          "metarex.media__demo", "mxflib__mxflib-playlist"}) {
        SCOPED_TRACE(name);
        std::ifstream stream(samplesDir() / (std::string(name) + ".mxf"), std::ios::binary);
        const Bytes clip(std::istreambuf_iterator<char>(stream), {});
        const Bytes after = EditedClip(clip).after(documentOf(clip), closing());
        Rewritable file(after);
        const std::size_t last = file.file.partitions().size() - 1;
        EXPECT_EQ(linesOf(Editing::findChanges(file.file.layout(0), file.file.layout(last),
                                               *MetaMetadata::Dictionary::builtIn())),
                  "");
        EXPECT_EQ(changesIn(clip, after, last), "");
        EXPECT_EQ(file.file.partitions()[0].pack.footerPartition,
                  file.file.partitions()[last].pack.thisPartition);
    }
}

TEST(EditPlan, growsWhereThereIsNoRoom) {
    EditedClip clip(clipOf());
    const auto document =
        replaced(documentOf(clip.bytes), ">Sound<", ">" + std::string(2000, 'n') + "<");
    const auto plan = clip.plan(document);
    EXPECT_EQ(plan.rewrite.insertions.size(), 2U);
    const Bytes after = clip.after(plan);
    EXPECT_EQ(changesIn(clip.bytes, after, 0), "changed TimelineTrack TrackName\n");
    EXPECT_EQ(changesIn(clip.bytes, after, 1), "changed TimelineTrack TrackName\n");
}

TEST(Guard, namesOnlyPropertiesThatTheDictionaryKnows) {
    const auto dictionary = MetaMetadata::Dictionary::builtIn();
    for (const auto& technical : Editing::technicalProperties) {
        std::array<Types::u8, 16> bytes{0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x01};
        Types::writeBigEndian(bytes.data() + 8, technical.label);
        EXPECT_NE(dictionary->findElement(Types::UniversalLabel(bytes)), nullptr) << technical.name;
    }
}

} // namespace
} // namespace Corvid::Testing
