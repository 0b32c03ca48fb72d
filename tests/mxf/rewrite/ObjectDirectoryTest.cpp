#include "host/mxf/rewrite/ObjectDirectory.h"

#include "host/mxf/rewrite/EditedHeader.h"
#include "tests/mxf/rewrite/CarryOut.h"
#include "tests/mxf/rewrite/ObjectMetadata.h"

namespace Corvid::mxf {
namespace {

using Testing::LayoutOf;
using Testing::MxfBuilder;
using Testing::uuid;
using TestBytes = Testing::Bytes;

using Testing::rootInstance;
using Parts = Testing::ObjectParts;

TestBytes fileOf(const Parts& parts = {}, const TestBytes& runIn = {}) {
    return MxfBuilder()
        .runIn(runIn)
        .add(Testing::headerPartition(Testing::objectMetadata(runIn.size() + 20 + 88, parts)))
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
    TestBytes runIn = {};
};
void PrintTo(const Untrue& c, std::ostream* out) { *out << c.name; }

class RefusesObjectDirectory : public ::testing::TestWithParam<Untrue> {};

TEST_P(RefusesObjectDirectory, thatIsNotTrue) {
    const LayoutOf of(fileOf(GetParam().parts, GetParam().runIn));
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
        Untrue{"RunIn", {}, "counts from the front of a file that has a run-in", TestBytes(10)}),
    Testing::nameOfCase<Untrue>);

TEST(ObjectDirectory, followsThePartitionThatItIsIn) {
    const TestBytes plain = Testing::join({Testing::smallMetadata(), Testing::fill(10)});
    const std::size_t pack = 20 + 88;
    const TestBytes file =
        MxfBuilder()
            .add(Testing::headerPartition(plain))
            .add(Testing::footerPartition(Testing::objectMetadata(2 * pack + plain.size())))
            .withRandomIndexPack()
            .build();
    Testing::Rewritable of(file);
    for (const bool isEditedToo : {false, true}) {
        FileEdit edit;
        edit.copies.push_back(Testing::longProperty(of.file, 0, 1, 1000));
        if (isEditedToo) {
            edit.copies.push_back(Testing::longProperty(of.file, 1, 1, 2000));
        }
        const Rewrite rewrite = of.file.plan(edit);
        EXPECT_EQ(rewrite.insertions.size(), isEditedToo ? 2U : 1U);
        const LayoutOf after(Testing::carryOut(file, rewrite), 1);
        EXPECT_TRUE(ObjectDirectory::find(after.layout).has_value());
    }
}

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
