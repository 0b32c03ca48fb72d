#include "host/mxf/rewrite/ObjectDirectory.h"
#include "tests/mxf/rewrite/HeaderEdits.h"
#include "tests/support/Paths.h"

#include <fstream>
#include <iterator>

namespace Corvid::mxf {
namespace {

using namespace HeaderEdits;

/// A set that changes in every property, and in none.
struct WholeChange {
    SetChange there;
    SetChange back;
};

WholeChange changeOfAll(const HeaderLayout& layout, std::size_t item) {
    WholeChange change;
    change.there.item = change.back.item = item;
    std::map<Types::u16, std::size_t> occurrences;
    LocalSet properties = layout.properties(layout.items()[item]);
    while (const auto each = properties.next()) {
        const PropertyName name{each->tag, occurrences[each->tag]++};
        // A directory of objects does not follow another InstanceUID.
        if (Types::UUID::fits(each->value) &&
            layout.instanceUID(layout.items()[item]) == Types::UUID(each->value)) {
            continue;
        }
        Bytes value;
        append(value, each->value);
        change.back.properties.push_back({name, value});
        value.push_back(0x55);
        change.there.properties.push_back({name, std::move(value)});
    }
    return change;
}

TEST(EditedHeader, takesEverySetOfEverySampleBackAndForth) {
    const auto folder = Testing::samplesDir();
    if (folder.empty()) {
        GTEST_SKIP() << "no folder of sample files";
    }
    std::size_t edits = 0;
    std::size_t grown = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() != ".mxf") {
            continue;
        }
        SCOPED_TRACE(entry.path().filename().string());
        std::ifstream stream(entry.path(), std::ios::binary);
        const LayoutOf of(TestBytes(std::istreambuf_iterator<char>(stream), {}));
        EXPECT_EQ(edited(of, {}), of.bytes);
        for (std::size_t i = 0; i < of.layout.items().size(); i += 7) {
            const LayoutItem& item = of.layout.items()[i];
            if (item.kind != LayoutItem::Kind::set || isObjectRoot(item.triplet.key)) {
                continue;
            }
            const WholeChange change = changeOfAll(of.layout, i);
            ByteRanges none;
            EXPECT_EQ(edited(of, oneSet(change.back), &none), of.bytes);
            EXPECT_TRUE(none.empty());
            const TestBytes there = edited(of, oneSet(change.there));
            if (there.empty()) {
                ++grown;
                continue;
            }
            const LayoutOf changedFile(there);
            EXPECT_EQ(there == of.bytes, change.there.properties.empty());
            const auto instance = of.layout.instanceUID(item);
            ASSERT_TRUE(instance);
            SetChange back = change.back;
            back.item = changedFile.layout.find(*instance).value();
            const LayoutOf again(edited(changedFile, oneSet(back)));
            // Every KLV but fill has its bytes again.
            const auto contents = [](const HeaderLayout& layout) {
                std::vector<TestBytes> all;
                for (const LayoutItem& each : layout.items()) {
                    if (each.kind != LayoutItem::Kind::fill) {
                        all.push_back(Testing::copyOf(layout.value(each)));
                    }
                }
                return all;
            };
            EXPECT_EQ(contents(of.layout), contents(again.layout));
            ++edits;
        }
    }
    EXPECT_GT(edits, 100U);
    EXPECT_GT(grown, 0U);
}

} // namespace
} // namespace Corvid::mxf
