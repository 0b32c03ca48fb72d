#include "host/mxf/rewrite/disk/InPlace.h"
#include "host/mxf/rewrite/disk/NewFile.h"
#include "host/mxf/rewrite/disk/SystemFiles.h"

#include "host/dataio/OpenSource.h"
#include "host/mxf/rewrite/InPlaceForm.h"
#include "tests/mxf/rewrite/CarryOut.h"
#include "tests/support/Paths.h"

#include <cstdio>
#include <memory>

namespace Corvid::mxf {
namespace {

/// What a command writes to standard output.
std::string outputOf(const std::string& command) {
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(::popen(command.c_str(), "r"), ::pclose);
    std::string output;
    char piece[4096];
    while (const std::size_t size = std::fread(piece, 1, sizeof piece, pipe.get())) {
        output.append(piece, size);
    }
    return output;
}

struct Case {
    const char* name;
    const char* arguments; ///< of FFmpeg, which makes the file with them
};
void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

/// A file that FFmpeg makes, and what it decodes of it.
class Ffmpeg : public ::testing::TestWithParam<Case> {
protected:
    void SetUp() override {
        if (Testing::ffmpeg().empty()) {
            GTEST_SKIP() << "no FFmpeg";
        }
        path_ = (folder_.path() / "clip.mxf").string();
        outputOf(Testing::ffmpeg() +
                 " -hide_banner -loglevel error -nostdin -f lavfi -i "
                 "testsrc=size=256x120:rate=25:duration=0.4 -f lavfi -i "
                 "sine=sample_rate=48000:duration=0.4 "
                 "-fflags +bitexact -metadata company_name=Old " +
                 GetParam().arguments + " " + path_);
        if (!std::filesystem::exists(path_)) {
            GTEST_SKIP() << "this FFmpeg does not make such a file";
        }
        frames_ = frames(path_);
        ASSERT_GT(frames_.size(), 1000U);
    }

    /// The hashes of all frames, and of those after a seek.
    static std::string frames(const std::string& path) {
        const std::string begin = Testing::ffmpeg() + " -hide_banner -loglevel error -nostdin ";
        const std::string end = " -i " + path + " -f framemd5 - 2>&1";
        return outputOf(begin + end) + outputOf(begin + "-ss 0.2" + end);
    }

    /// An edit of the company name in every Identification of every copy.
    static FileEdit companyName(RewritableFile& file, const std::u16string& name) {
        const Testing::Bytes value = Testing::utf16(name);
        FileEdit edit;
        for (std::size_t i = 0; i != file.partitions().size(); ++i) {
            if (!file.hasMetadata(i)) {
                continue;
            }
            CopyEdit copy;
            copy.partition = i;
            const auto& items = file.layout(i).items();
            for (std::size_t item = 0; item != items.size(); ++item) {
                if (items[item].triplet.key ==
                    KLV::Key(Testing::structuralKey(Testing::identificationSet).data())) {
                    copy.edit.changedSets.push_back(
                        {item, {{{Types::u16{0x3C01}, 0}, Bytes(value.begin(), value.end())}}, {}});
                }
            }
            edit.copies.push_back(std::move(copy));
        }
        return edit;
    }

    Rewrite planned(const std::u16string& name, std::uint64_t blockSize = 1) const {
        const auto source = DataIO::openSource(path_);
        RewritableFile file(*source);
        return file.plan(companyName(file, name), {512, blockSize});
    }

    /// @param name  what the company's name begins with.
    void expectName(const std::string& path, const std::string& name) const {
        EXPECT_EQ(frames(path), frames_);
        const std::string log =
            outputOf(Testing::ffmpeg() + " -hide_banner -nostdin -i " + path + " 2>&1");
        EXPECT_NE(log.find(": " + name), std::string::npos) << log;
    }

    Testing::TemporaryDir folder_;
    std::string path_;
    std::string frames_;
    SystemFiles files_;
};

TEST_P(Ffmpeg, decodesTheSameAfterAnEditInPlace) {
    expectName(path_, "Old");
    const Rewrite rewrite = planned(u"A");
    EXPECT_TRUE(rewrite.insertions.empty());
    rewriteInPlace(files_, path_, rewrite, *files_.find(path_));
    expectName(path_, "A");
}

TEST_P(Ffmpeg, decodesTheSameAfterTheMetadataHasGrown) {
    const Rewrite rewrite = planned(std::u16string(15000, u'x'));
    EXPECT_FALSE(rewrite.insertions.empty());
    const std::string to = (folder_.path() / "new.mxf").string();
    writeNewFile(files_, path_, to, rewrite, *files_.find(path_));
    expectName(to, std::string(100, 'x'));
}

TEST_P(Ffmpeg, decodesTheSameAfterBlocksWereInserted) {
    const std::uint64_t block =
        files_.insertionBlock(OpenFile(files_, path_, FileSystem::Access::read).number());
    if (block == 0) {
        GTEST_SKIP() << "the file system of temporary files inserts no blocks";
    }
    const Rewrite rewrite = planned(std::u16string(15000, u'x'), block);
    const auto source = DataIO::openSource(path_);
    const auto form = inPlaceForm(rewrite, *source, block);
    ASSERT_TRUE(form);
    EXPECT_EQ(form->insertions.size(), 1U);
    const FileStatus before = *files_.find(path_);
    const std::string copy = (folder_.path() / "copy.mxf").string();
    writeNewFile(files_, path_, copy, rewrite, before);
    EXPECT_FALSE(rewriteInPlace(files_, path_, *form, before));
    EXPECT_EQ(files_.find(path_)->inode, before.inode);
    expectName(path_, std::string(100, 'x'));
    // Both ways make the same file.
    EXPECT_EQ(outputOf("cmp " + path_ + " " + copy + " 2>&1"), "");
}

INSTANTIATE_TEST_SUITE_P(
    , Ffmpeg,
    ::testing::Values(Case{"Op1a", "-c:v mpeg2video -g 6 -bf 2 -c:a pcm_s16le"},
                      Case{"Op1aConstantBytes",
                           "-map 0:v -c:v dnxhd -profile:v dnxhr_lb -pix_fmt yuv422p"},
                      Case{"OpAtom", "-map 0:v -c:v dnxhd -profile:v dnxhr_lb -pix_fmt yuv422p "
                                     "-f mxf_opatom"}),
    Testing::nameOfCase<Case>);

} // namespace
} // namespace Corvid::mxf
