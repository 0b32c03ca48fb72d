#include "editing/apply/CarryOut.h"

#include "tests/editing/EditedClip.h"
#include "tests/mxf/rewrite/disk/ModelFiles.h"
#include "tests/support/MxfBuilder.h"

namespace Corvid::Testing {
namespace {

using Editing::EditTarget;
using Editing::EditWay;

const std::string path = "clip.mxf";

/// A clip without room for longer metadata, alone on a disk, and an edit of it.
class CarryOut : public ::testing::Test {
protected:
    static Bytes roomless() {
        PartitionSpec header = headerPartition(join(
            {standardPrimer(),
             set(structuralKey(prefaceSet), 1,
                 {property(0x3B03, uuid(2)), property(0x3B06, batch({uuid(3)}, 16))}),
             set(structuralKey(contentStorageSet), 2),
             set(structuralKey(identificationSet), 3, {property(0x3C01, utf16(u"A company"))})}));
        header.behindMetadata = klv(essenceKey(), repeat(0xEE, 5000));
        return MxfBuilder().add(header).add(footerPartition()).withRandomIndexPack().build();
    }

    Disk disk() const {
        Disk disk;
        disk.names[path] = 1;
        disk.files[1].assign(clip.bytes.begin(), clip.bytes.end());
        return disk;
    }

    Templates::auto_ptr<DataIO::RandomAccessSource> source() const {
        return Templates::auto_ptr<DataIO::RandomAccessSource>(
            new DataIO::MemorySource(clip.bytes.data(), clip.bytes.size()));
    }

    /// An edit after which the clip is longer, by blocks of the model.
    Editing::EditPlan growth() {
        Editing::EditOptions options;
        options.blockSize = ModelFiles::blockSize;
        return clip.plan(replaced(documentOf(clip.bytes), "A company", std::string(9000, 'n')),
                         options);
    }

    static bool has(const ModelFiles& files, const Bytes& content) {
        const mxf::Bytes& found = files.now().content(path);
        return std::equal(found.begin(), found.end(), content.begin(), content.end(),
                          [](Types::u8 is, Types::u8 wanted) {
                              return is == wanted || (is == 0 && wanted == 0xDD); // fill
                          });
    }

    EditedClip clip{roomless()};
};

TEST_F(CarryOut, insertsBlocksIntoTheClip) {
    ModelFiles files(disk());
    const auto plan = growth();
    EXPECT_EQ(carryOut(files, path, source(), plan, *files.find(path), EditTarget()),
              EditWay::inPlace);
    EXPECT_TRUE(has(files, clip.after(plan)));
    EXPECT_EQ(files.now().names.at(path), 1U);
}

TEST_F(CarryOut, replacesTheClipWhereItsFileSystemInsertsNoBlocksAfterAll) {
    class Refusing : public ModelFiles {
    public:
        using ModelFiles::ModelFiles;
        std::uint64_t insertionBlock(int) override { return blockSize; }
    };
    Refusing files(disk());
    files.inserts = false;
    const auto plan = growth();
    EXPECT_EQ(carryOut(files, path, source(), plan, *files.find(path), EditTarget()),
              EditWay::replace);
    EXPECT_TRUE(has(files, clip.after(plan)));
    EXPECT_NE(files.now().names.at(path), 1U);
    EXPECT_EQ(files.now().names.size(), 1U);
}

} // namespace
} // namespace Corvid::Testing
