#include "host/mxf/File.h"

#include "tests/mxf/ReadBack.h"

namespace Corvid::mxf {
namespace {

using Testing::Bytes;
using Testing::join;
using Testing::MxfBuilder;
using Testing::PartitionSpec;
using Testing::ReadBack;

enum Content { none, whole, cut };

/// A partition's kind, status and metadata.
struct Copy {
    unsigned char kind;
    unsigned char status;
    Content content;
};

struct Case {
    const char* name;
    std::vector<Copy> copies;
    std::size_t taken;
    const char* warning; ///< part of it; empty for none
};
void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

Bytes metadataOf(Content content) {
    const Bytes metadata = Testing::smallMetadata();
    switch (content) {
    case none:
        return {};
    case whole:
        return metadata;
    case cut:
        return Bytes(metadata.begin(), metadata.end() - 3);
    }
    return {};
}

MxfBuilder fileOf(const std::vector<Copy>& copies) {
    MxfBuilder builder;
    for (const Copy& copy : copies) {
        PartitionSpec spec;
        spec.kind = copy.kind;
        spec.status = copy.status;
        spec.metadata = metadataOf(copy.content);
        builder.add(spec);
    }
    builder.withRandomIndexPack();
    return builder;
}

class AutomaticChoice : public ::testing::TestWithParam<Case> {};

TEST_P(AutomaticChoice, takesTheLastCompleteCopy) {
    ReadBack back(fileOf(GetParam().copies));
    EXPECT_GE(back.metadata().size(), 1U);
    EXPECT_EQ(back.read.partition, GetParam().taken);
    EXPECT_EQ(back.warnings.all.empty(), *GetParam().warning == '\0') << back.warnings.lines();
    EXPECT_TRUE(back.warnings.all.empty() || back.warnings.tell(GetParam().warning))
        << back.warnings.lines();
}

INSTANTIATE_TEST_SUITE_P(
    , AutomaticChoice,
    ::testing::Values(
        Case{"HeaderOnly", {{2, 4, whole}}, 0, ""},
        Case{"FooterWithoutMetadata", {{2, 4, whole}, {3, 4, none}, {4, 4, none}}, 0, ""},
        Case{"ClosedHeaderAndFooter", {{2, 4, whole}, {4, 4, whole}}, 1, ""},
        Case{"OpenHeaderAndFooter", {{2, 1, whole}, {4, 4, whole}}, 1, ""},
        Case{"BodyAfterIncompleteHeader", {{2, 1, whole}, {3, 3, whole}, {4, 4, none}}, 1, ""},
        Case{
            "LastOfTwoBodies", {{2, 1, whole}, {3, 4, whole}, {3, 4, whole}, {3, 1, whole}}, 2, ""},
        Case{"OpenComplete", {{2, 3, whole}, {4, 1, whole}}, 0, ""},
        Case{"NoneComplete",
             {{2, 1, whole}, {3, 2, whole}, {4, 4, none}},
             1,
             "because no complete partition has whole header metadata"},
        Case{"CutFooter",
             {{2, 4, whole}, {4, 4, cut}},
             0,
             "(footer, closed and complete): the header metadata is not whole, so that of "
             "partition 0 (header, closed and complete) is used [metadata-not-whole]"},
        Case{"CutFooterAndIncompleteHeader", {{2, 1, whole}, {4, 4, cut}}, 0, "is not whole"},
        Case{"AllCut",
             {{2, 4, cut}, {4, 4, cut}},
             1,
             "because no partition has whole header metadata"},
        Case{"UnknownStatus", {{2, 9, whole}}, 0, "of unknown status"}),
    Testing::nameOfCase<Case>);

TEST(File, readsThePartitionThatIsAskedFor) {
    const MxfBuilder builder = fileOf({{2, 1, whole}, {3, 4, whole}, {3, 4, none}, {4, 4, whole}});
    const auto taken = [&](PartitionChoice choice) {
        ReadBack back(builder);
        back.metadata(choice);
        return back.read.partition;
    };
    EXPECT_EQ(taken(PartitionChoice::header()), 0U);
    EXPECT_EQ(taken(PartitionChoice::footer()), 3U);
    EXPECT_EQ(taken(PartitionChoice::numbered(1)), 1U);
    EXPECT_EQ(taken(PartitionChoice::automatic()), 3U);
}

TEST(File, refusesAPartitionThatIsNotThere) {
    const auto message = [](const MxfBuilder& builder, PartitionChoice choice) {
        ReadBack back(builder);
        return Testing::messageOf([&] { back.metadata(choice); });
    };
    const MxfBuilder headerOnly = fileOf({{2, 4, whole}, {3, 4, none}});
    EXPECT_EQ(message(headerOnly, PartitionChoice::footer()),
              "no footer partition among the 2 partitions of the file");
    EXPECT_EQ(message(headerOnly, PartitionChoice::numbered(2)), "no partition 2, the last is 1");
    EXPECT_EQ(message(headerOnly, PartitionChoice::numbered(1)),
              "no header metadata in partition 1 (body, closed and complete)");
    EXPECT_EQ(message(fileOf({{2, 4, none}}), PartitionChoice::automatic()),
              "no header metadata in partition 0 (header, closed and complete), and no other "
              "partition was found");
}

TEST(File, refusesWhatIsNoMxf) {
    for (const Bytes& bytes : {Bytes{0x06}, Bytes(100), Bytes(65551), Bytes(200'000),
                               Testing::standardPrimer(), Bytes(70'000, 0x06)}) {
        EXPECT_EQ(Testing::messageOf([&] { ReadBack back(bytes); }),
                  "not an MXF file: no partition pack in the first " +
                      std::to_string(std::min<std::size_t>(bytes.size(), 65551)) +
                      (bytes.size() == 1 ? " byte" : " bytes"));
    }
    EXPECT_EQ(Testing::messageOf([] { ReadBack back(Bytes{}); }), "the file is empty");
}

TEST(File, refusesToReadFromNothingAndWithoutDictionary) {
    using Source = Templates::auto_ptr<DataIO::RandomAccessSource>;
    Testing::Collected warnings;
    const Bytes bytes = fileOf({{2, 4, whole}}).build();
    const auto refused = [&](Source source, Templates::SharedPtr<MetaMetadata::Dictionary> with) {
        EXPECT_THROW(File(std::move(source), std::move(with), warnings),
                     Exceptions::InvalidArgument);
    };
    refused(Source(), MetaMetadata::Dictionary::builtIn());
    refused(Source(new DataIO::MemorySource(bytes.data(), bytes.size())), {});
}

TEST(File, hasNoHeaderPartitionWhereTheFirstIsAnother) {
    const auto message = [](unsigned char kind) {
        ReadBack back(fileOf({{kind, 4, whole}}));
        return Testing::messageOf([&] { back.metadata(PartitionChoice::header()); });
    };
    EXPECT_EQ(message(4), "no header partition: the first is a footer partition");
    EXPECT_EQ(message(3), "no header partition: the first is a body partition");
    ReadBack back(fileOf({{4, 4, whole}}));
    EXPECT_EQ(back.metadata(PartitionChoice::numbered(0)).size(), 2U);
}

TEST(File, doesNotLookForOtherPartitionsWhenTheHeaderIsAskedFor) {
    ReadBack back(fileOf({{2, 4, whole}, {4, 4, whole}}).withRandomIndexPack({5}));
    back.metadata(PartitionChoice::header());
    EXPECT_EQ(back.warnings.lines(), "");
}

} // namespace
} // namespace Corvid::mxf
