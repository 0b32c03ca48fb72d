#include "host/mxf/rewrite/ObjectDirectory.h"

#include "host/mxf/rewrite/EditedHeader.h"
#include "tests/mxf/rewrite/LayoutOf.h"

namespace Corvid::mxf {
namespace {

using Testing::fill;
using Testing::hex;
using Testing::join;
using Testing::klv;
using Testing::LayoutOf;
using Testing::MxfBuilder;
using Testing::number;
using Testing::property;
using Testing::uuid;
using TestBytes = Testing::Bytes;

const TestBytes rootKey = hex("80.53.08.00.36.21.08.04.b3.b3.98.a5.1c.90.11.d4");
const TestBytes directoryKey = hex("96.13.b3.8a.87.34.87.46.f1.02.96.f0.56.e0.4d.2a");
const TestBytes offsetLabel = hex("06.0e.2b.34.01.01.01.02.06.01.01.07.07.00.00.00");
constexpr unsigned rootInstance = 77;

struct Parts {
    bool offsetInPrimer = true;
    std::uint64_t offsetsAdd = 0; ///< makes the entries untrue
    std::uint64_t rootAdds = 0;   ///< makes the root's offset untrue
    std::uint64_t count = 3;      ///< of the entries, as the directory says
    bool hasRoot = true;
    TestBytes runIn = {};
};

/// Root (77), Preface (1) and ContentStorage (2), the directory of the three, and fill.
TestBytes fileOf(const Parts& parts = {}) {
    auto entries = Testing::standardLabels();
    if (parts.offsetInPrimer) {
        entries.emplace_back(3, offsetLabel);
    }
    const TestBytes primer = Testing::primer(entries);
    const std::uint64_t begin = parts.runIn.size() + 20 + 88;
    const std::uint64_t rootAt = begin + primer.size();
    const auto root = [&](std::uint64_t offset) {
        return parts.hasRoot ? klv(rootKey,
                                   join({property(0x3C0A, uuid(rootInstance)),
                                         property(3, join({TestBytes(16), number(offset, 8)}))}),
                                   9)
                             : TestBytes();
    };
    const TestBytes sets = Testing::smallSets();
    const std::uint64_t prefaceAt = rootAt + root(0).size();
    const TestBytes storage = Testing::set(Testing::structuralKey(Testing::contentStorageSet), 2);
    const std::uint64_t directoryAt = prefaceAt + sets.size();
    const auto entry = [&](unsigned instance, std::uint64_t offset, unsigned flags) {
        return join({uuid(instance), number(offset + parts.offsetsAdd, 8), number(flags, 1)});
    };
    const TestBytes directory =
        klv(directoryKey,
            join({number(parts.count, 8), number(25, 1), entry(2, directoryAt - storage.size(), 9),
                  entry(rootInstance, rootAt, 0), entry(1, prefaceAt, 5)}),
            9);
    return MxfBuilder()
        .runIn(parts.runIn)
        .add(Testing::headerPartition(
            join({primer, root(directoryAt + parts.rootAdds), sets, directory, fill(400)})))
        .build();
}

TestBytes edited(const LayoutOf& of, const HeaderEdit& edit) {
    EditedHeader header(of.layout, edit);
    EXPECT_EQ(header.fit(), 0U);
    TestBytes bytes = of.bytes;
    for (const ByteRange& range :
         differences(EditedHeader::segmentsOf(of.layout), header.segments())) {
        std::copy(range.bytes.begin(), range.bytes.end(),
                  bytes.begin() + static_cast<std::ptrdiff_t>(range.offset));
    }
    return bytes;
}

/// InstanceUIDs (their last byte) and flags of the entries; that the entries are true, find()
/// checks.
std::vector<std::pair<unsigned, unsigned>> entriesIn(const TestBytes& bytes) {
    const LayoutOf of(bytes);
    std::vector<std::pair<unsigned, unsigned>> result;
    const auto directory = ObjectDirectory::find(of.layout);
    for (const auto& entry : directory.value().entries()) {
        EXPECT_EQ(of.layout.instanceUID(of.layout.items()[entry.item]), entry.instance);
        result.emplace_back(entry.instance[15], entry.flags);
    }
    return result;
}

using Entries = std::vector<std::pair<unsigned, unsigned>>;

HeaderEdit longerPreface(const LayoutOf& of) {
    HeaderEdit edit;
    edit.changedSets.push_back(
        {of.set(1), {}, {{Testing::labelOf(Testing::standardLabels()[7].second), Bytes(30), 0}}});
    return edit;
}

TEST(ObjectDirectory, isReadWithItsRoot) {
    for (const bool offsetInPrimer : {true, false}) {
        Parts parts;
        parts.offsetInPrimer = offsetInPrimer;
        EXPECT_EQ(entriesIn(fileOf(parts)), (Entries{{2, 9}, {rootInstance, 0}, {1, 5}}));
    }
    EXPECT_FALSE(
        ObjectDirectory::find(LayoutOf(MxfBuilder().add(Testing::headerPartition())).layout));
}

TEST(ObjectDirectory, keepsItsBytesWhereNothingMoves) {
    const LayoutOf of(fileOf());
    EXPECT_EQ(edited(of, {}), of.bytes);
}

TEST(ObjectDirectory, followsSetsThatMove) {
    const LayoutOf of(fileOf());
    const TestBytes bytes = edited(of, longerPreface(of));
    EXPECT_NE(bytes, of.bytes);
    EXPECT_EQ(entriesIn(bytes), (Entries{{2, 9}, {rootInstance, 0}, {1, 5}}));
}

TEST(ObjectDirectory, listsNewSetsAtItsEndAndRemovedOnesNoLonger) {
    const LayoutOf of(fileOf());
    HeaderEdit edit = longerPreface(of);
    edit.removed.push_back(of.set(2));
    for (const unsigned instance : {8U, 9U}) {
        const TestBytes bytes = uuid(instance);
        edit.newSets.push_back({KLV::Key(Testing::structuralKey(0x30).data()),
                                of.set(1),
                                {{Testing::labelOf(Testing::instanceUIDLabel()),
                                  Bytes(bytes.begin(), bytes.end()), 0}},
                                4});
    }
    EXPECT_EQ(entriesIn(edited(of, edit)), (Entries{{rootInstance, 0}, {1, 5}, {8, 0}, {9, 0}}));
}

struct Untrue {
    const char* name;
    Parts parts;
    const char* why;
};
void PrintTo(const Untrue& c, std::ostream* out) { *out << c.name; }

class RefusesObjectDirectory : public ::testing::TestWithParam<Untrue> {};

TEST_P(RefusesObjectDirectory, thatIsNotTrue) {
    const LayoutOf of(fileOf(GetParam().parts));
    const std::string message = Testing::messageOf([&] { EditedHeader(of.layout, {}); });
    EXPECT_NE(message.find(GetParam().why), std::string::npos) << message;
    EXPECT_NE(message.find(": the directory of the objects "), std::string::npos);
    EXPECT_NE(message.find(", so the sets that it lists can't be moved"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    , RefusesObjectDirectory,
    ::testing::Values(
        Untrue{"EntriesOfOtherPlaces", {true, 1}, ", where it is not"},
        Untrue{"AnotherPlaceInTheRoot", {true, 0, 1}, "is not where its root set says"},
        Untrue{"CountTooLow", {true, 0, 0, 2}, "does not have the length that its count asks for"},
        Untrue{"CountTooHigh",
               {true, 0, 0, ~std::uint64_t{0}},
               "does not have the length that its count asks for"},
        Untrue{"NoRoot", {true, 0, 0, 3, false}, "lists the set"},
        Untrue{"RunIn",
               {true, 0, 0, 3, true, TestBytes(10)},
               "counts from the front of a file that has a run-in"}),
    Testing::nameOfCase<Untrue>);

TEST(ObjectDirectory, refusesEditsThatItCannotFollow) {
    const LayoutOf of(fileOf());
    HeaderEdit root;
    root.removed.push_back(of.set(rootInstance));
    HeaderEdit directory;
    directory.changedDark.push_back({of.layout.items().size() - 2, {}});
    for (const HeaderEdit& edit : {root, directory}) {
        EXPECT_EQ(Testing::messageOf([&] { EditedHeader(of.layout, edit); }),
                  "the edit changes the directory of the objects or its root set, which follow by "
                  "themselves");
    }
    HeaderEdit renamed;
    renamed.changedSets.push_back({of.set(1), {{{Types::u16{0x3C0A}, 0}, Bytes(16)}}, {}});
    EXPECT_EQ(Testing::messageOf([&] { EditedHeader(of.layout, renamed); }),
              "the edit changes the InstanceUID of a set that the directory of the objects lists");
    HeaderEdit nameless;
    nameless.newSets.push_back({KLV::Key(Testing::structuralKey(0x30).data()), of.set(1), {}, 4});
    EXPECT_EQ(Testing::messageOf([&] { EditedHeader(of.layout, nameless); }),
              "the edit inserts a set without InstanceUID, so the directory of the objects can't "
              "list it");
}

} // namespace
} // namespace Corvid::mxf
