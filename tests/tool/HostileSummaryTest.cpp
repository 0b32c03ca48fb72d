#include "host/base/Exceptions.h"
#include "host/dataio/MemorySource.h"
#include "inspection/Summary.h"
#include "tests/support/MxfBuilder.h"
#include "tools/corvid/reports/SummaryReport.h"
#include "tools/corvid/terminal/WarningLog.h"

#include <gmock/gmock.h>

namespace Corvid::Testing {
namespace {

constexpr unsigned char packageSet = 0x36;
constexpr unsigned char sequenceSet = 0x0F;
constexpr unsigned char dataDefinitionSet = 0x1B;
const Bytes dataDefinition = hex("06.0e.2b.34.04.01.01.01.0f.7f.7f.7f.01.02.03.00");

/// A file with many tracks that share a segment, whose data definition has a name.
Bytes fileWithTracks(std::size_t tracks, const std::u16string& name) {
    constexpr unsigned firstTrack = 16;
    std::vector<Bytes> references;
    std::vector<Bytes> sets;
    for (unsigned i = 0; i != tracks; ++i) {
        references.push_back(uuid(firstTrack + i));
        sets.push_back(
            set(structuralKey(timelineTrackSet), firstTrack + i, {property(0x4803, uuid(4))}));
    }
    return MxfBuilder()
        .add(headerPartition(join(
            {standardPrimer(), set(structuralKey(prefaceSet), 1, {property(0x3B03, uuid(2))}),
             set(structuralKey(contentStorageSet), 2, {property(0x1901, batch({uuid(3)}, 16))}),
             set(structuralKey(packageSet), 3, {property(0x4403, batch(references, 16))}),
             set(structuralKey(sequenceSet), 4, {property(0x0201, dataDefinition)}),
             set(structuralKey(dataDefinitionSet), 5,
                 {property(0x1B01, dataDefinition), property(0x1B02, utf16(name))}),
             join(sets)})))
        .build();
}

Inspection::Summary summaryOf(const Bytes& bytes) {
    mxf::NoWarnings warnings;
    mxf::File file(Templates::auto_ptr<DataIO::RandomAccessSource>(
                       new DataIO::MemorySource(bytes.data(), bytes.size())),
                   MetaMetadata::Dictionary::builtIn(), warnings);
    return Inspection::summarise(file, file.readMetadata());
}

TEST(HostileSummary, isRefusedWithoutMetadata) {
    mxf::NoWarnings warnings;
    const Bytes bytes = fileWithTracks(1, u"Subtitles");
    mxf::File file(Templates::auto_ptr<DataIO::RandomAccessSource>(
                       new DataIO::MemorySource(bytes.data(), bytes.size())),
                   MetaMetadata::Dictionary::builtIn(), warnings);
    EXPECT_THROW(Inspection::summarise(file, mxf::HeaderMetadata{}), Exceptions::InvalidArgument);
}

Tool::SummaryText everything() {
    Tool::SummaryText all;
    all.all = true;
    all.labels = true;
    return all;
}

TEST(HostileSummary, callsTracksByTheNameOfTheirDataDefinition) {
    const Inspection::Summary summary = summaryOf(fileWithTracks(2, u"Subtitles"));
    ASSERT_EQ(summary.packages.size(), 1U);
    ASSERT_EQ(summary.packages.front().tracks.size(), 2U);
    EXPECT_EQ(summary.packages.front().tracks.back().kind, "Subtitles");
    const Inspection::Summary longest =
        summaryOf(fileWithTracks(1, std::u16string(Inspection::longestKind, u'a')));
    EXPECT_EQ(longest.packages.front().tracks.front().kind,
              std::string(Inspection::longestKind, 'a'));
}

TEST(HostileSummary, doesNotRepeatALongNameForEachTrack) {
    const Bytes bytes = fileWithTracks(2000, std::u16string(30000, u'a'));
    const Inspection::Summary summary = summaryOf(bytes);
    // No comparison of texts, for its message would repeat the name.
    EXPECT_TRUE(summary.packages.front().tracks.front().kind ==
                std::string(Inspection::longestKind, 'a') + "...");
    EXPECT_LT(Tool::toText(summary, {}, {}).size(), 8 * bytes.size());
    EXPECT_LT(Tool::toText(summary, {}, everything()).size(), 8 * bytes.size());
    EXPECT_LT(Tool::toJson(summary, {}).size(), 8 * bytes.size());
}

} // namespace
} // namespace Corvid::Testing
