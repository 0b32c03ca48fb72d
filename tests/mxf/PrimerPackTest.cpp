#include "host/mxf/PrimerPack.h"

#include "tests/mxf/ReadBack.h"

namespace Corvid::mxf {
namespace {

using Testing::batch;
using Testing::Bytes;
using Testing::join;
using Testing::number;

const Bytes first = join({number(0x3C0A, 2), Testing::instanceUIDLabel()});
const Bytes second = join({number(0xFFFE, 2), Testing::uuid(7)});

struct Case {
    const char* name;
    Bytes value;
    std::size_t entries;
    const char* warning; ///< part of it; empty for none
};
void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

class ReadsPrimer : public ::testing::TestWithParam<Case> {};

TEST_P(ReadsPrimer, takesTheEntriesThatAreThere) {
    Testing::Collected warnings;
    const auto& value = GetParam().value;
    const PrimerPack pack = parsePrimerPack({value.data(), value.size()}, 40, warnings);
    ASSERT_EQ(pack.size(), GetParam().entries);
    if (!pack.empty()) {
        EXPECT_EQ(pack[0].first.value(), 0x3C0A);
        EXPECT_EQ(pack[0].second, Types::UniversalLabel(Types::ByteView{first.data() + 2, 16}));
    }
    EXPECT_EQ(warnings.all.empty(), *GetParam().warning == '\0') << warnings.lines();
    EXPECT_TRUE(warnings.all.empty() || warnings.tell(GetParam().warning)) << warnings.lines();
    EXPECT_TRUE(warnings.all.empty() || warnings.tell("byte 40: the primer pack "))
        << warnings.lines();
}

INSTANTIATE_TEST_SUITE_P(
    , ReadsPrimer,
    ::testing::Values(
        Case{"TwoEntries", batch({first, second}, 18), 2, ""},
        Case{"TheSameEntryTwice", batch({first, first}, 18), 2, ""},
        Case{"NoEntries", batch({}, 18), 0, ""}, Case{"NoEntriesOfNoSize", batch({}, 0), 0, ""},
        Case{"CountTooGreat", batch({first, second}, 18, 0xFFFFFFFF), 2, "says 4294967295 entries"},
        Case{"CountTooSmall", batch({first, second}, 18, 1), 2, "says 1 entries"},
        Case{"WrongItemSize", batch({first, second}, 18, {}, 20), 2, "says entries of 20 bytes"},
        Case{"BytesBehind", join({batch({first}, 18), {1, 2, 3}}), 1, "room for 1"},
        Case{"NoHead", {0, 0, 0, 0, 0, 0, 0}, 0, "ends after 7 bytes"},
        Case{"Nothing", {}, 0, "ends after 0 bytes"}),
    Testing::nameOfCase<Case>);

TEST(PrimerPack, isWrittenAsItStands) {
    const Types::UniversalLabel label(Types::ByteView{first.data() + 2, 16});
    const Bytes uuid = Testing::uuid(7);
    for (const std::size_t repeated : {0U, 1U, 5000U}) {
        PrimerPack pack;
        std::vector<std::pair<unsigned, Bytes>> entries;
        for (std::size_t i = 0; i != repeated; ++i) {
            pack.emplace_back(Types::LocalTag(0x3C0A), label);
            pack.emplace_back(Types::LocalTag(0xFFFE),
                              Types::UniversalLabel(Types::ByteView{uuid.data(), 16}));
            entries.emplace_back(0x3C0A, Testing::instanceUIDLabel());
            entries.emplace_back(0xFFFE, uuid);
        }
        DataIO::Memory::MemoryDataSink sink;
        serialize(pack, sink);
        EXPECT_EQ(Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize()),
                  Testing::primer(entries));
        EXPECT_EQ(serializedSize(pack), sink.serializedSize());
    }
}

} // namespace
} // namespace Corvid::mxf
