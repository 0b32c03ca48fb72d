#include "host/mxf/rewrite/disk/SystemFiles.h"
#include "tests/mxf/rewrite/ObjectMetadata.h"
#include "tests/tool/RunCommand.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using namespace Corvid::Testing;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

/// A clip, its document, and the document with another name of the package.
class Apply : public ::testing::Test {
protected:
    Apply() {
        std::filesystem::copy_file(sourceDir() / "examples" / "sample.mxf",
                                   shop.path() / "clip.mxf");
        shop.run("corvid to-xml clip.mxf -o doc.xml");
        shop.run("sed 's/Test picture and tone/Camera 1/' doc.xml >edited.xml");
        before = shop.read("clip.mxf");
        shop.write("small.mxf", roomless());
        shop.run("corvid to-xml small.mxf -o small.xml");
        shop.run("sed 's/A company/" + std::string(3000, 'n') + "/' small.xml >long.xml");
    }

    /// A whole file whose header metadata is followed by essence at once.
    static Bytes roomless() {
        const Bytes metadata = join(
            {standardPrimer(),
             set(structuralKey(prefaceSet), 1,
                 {property(0x3B03, uuid(2)), property(0x3B06, batch({uuid(3)}, 16))}),
             set(structuralKey(contentStorageSet), 2),
             set(structuralKey(identificationSet), 3, {property(0x3C01, utf16(u"A company"))})});
        PartitionSpec header = headerPartition(metadata);
        header.behindMetadata = klv(essenceKey(), repeat(0xEE, 5000));
        return MxfBuilder()
            .add(header)
            .add(footerPartition(metadata))
            .withRandomIndexPack()
            .build();
    }

    Outcome run(const std::string& line) const { return shop.run(line); }

    const Workshop shop;
    std::string before;
};

TEST_F(Apply, writesNothingWhereTheDocumentIsNotEdited) {
    const auto clip = shop.path() / "clip.mxf";
    std::filesystem::last_write_time(clip, std::filesystem::file_time_type::clock::now() -
                                               std::chrono::hours(1000));
    const auto time = std::filesystem::last_write_time(clip);
    const Outcome outcome = run("corvid apply doc.xml clip.mxf --in-place");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "no change\n");
    EXPECT_EQ(outcome.err, "");
    EXPECT_TRUE(shop.read("clip.mxf") == before);
    EXPECT_EQ(std::filesystem::last_write_time(clip), time);
}

TEST_F(Apply, writesTheSameFileWhereTheDocumentIsNotEdited) {
    EXPECT_EQ(run("corvid apply doc.xml clip.mxf -o new.mxf").status, 0);
    EXPECT_TRUE(shop.read("new.mxf") == before);
}

TEST_F(Apply, changesAClipInPlace) {
    const std::size_t files = shop.count();
    const Outcome outcome = run("corvid apply edited.xml clip.mxf --in-place");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, AllOf(HasSubstr("in place: "), HasSubstr("partition 0 (header")));
    EXPECT_EQ(shop.read("clip.mxf").size(), before.size());
    EXPECT_EQ(shop.count(), files) << "nothing is left beside the clip";
    EXPECT_THAT(run("corvid info --all clip.mxf").out,
                AllOf(HasSubstr("\"Camera 1\""), HasSubstr("Corvid / corvid / ")));
    EXPECT_EQ(run("corvid check clip.mxf").status, 0);
}

TEST_F(Apply, writesAnEditedCopyAndLeavesTheClipAlone) {
    shop.write("new.mxf", std::string("what was there"));
    EXPECT_EQ(run("corvid apply edited.xml clip.mxf -o new.mxf").status, 0);
    EXPECT_TRUE(shop.read("clip.mxf") == before);
    EXPECT_THAT(run("corvid info --all new.mxf").out, HasSubstr("\"Camera 1\""));
}

TEST_F(Apply, leavesTheHistoryAloneWhereAsked) {
    EXPECT_EQ(run("corvid apply edited.xml clip.mxf --in-place --no-identification").status, 0);
    run("corvid to-xml clip.mxf -o again.xml");
    EXPECT_EQ(shop.read("again.xml"), shop.read("edited.xml"));
    EXPECT_EQ(run("corvid apply doc.xml clip.mxf --in-place --no-identification").status, 0);
    run("corvid to-xml clip.mxf -o again.xml");
    EXPECT_EQ(shop.read("again.xml"), shop.read("doc.xml"));
}

TEST_F(Apply, showsWhatWouldChange) {
    const Outcome same = run("corvid apply doc.xml clip.mxf --dry-run");
    EXPECT_EQ(same.status, 0);
    EXPECT_EQ(same.out, "no change\n");
    const Outcome outcome = run("corvid apply edited.xml clip.mxf --dry-run --no-identification");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out,
                AllOf(HasSubstr("changed MaterialPackage ad.ab.44.24"),
                      HasSubstr("  PackageName: \"Test picture and tone\" -> \"Camera 1\"\n"),
                      HasSubstr("in place: ")));
    EXPECT_TRUE(shop.read("clip.mxf") == before);
}

TEST_F(Apply, showsTheSameForPrograms) {
    const Outcome outcome = run("corvid apply edited.xml clip.mxf --dry-run --json");
    EXPECT_EQ(outcome.status, 1);
    const auto json = nlohmann::json::parse(outcome.out);
    EXPECT_EQ(json["file"], "clip.mxf");
    EXPECT_EQ(json["way"], "in-place");
    EXPECT_EQ(json["sizeAfter"], before.size());
    const auto& package = json["sets"][0];
    EXPECT_EQ(package["set"], "MaterialPackage");
    EXPECT_EQ(package["properties"][0]["name"], "PackageName");
    EXPECT_EQ(package["properties"][0]["after"], "\"Camera 1\"");
    EXPECT_EQ(package["properties"][0]["bytesAfter"], "00430061006d006500720061002000310000");
}

TEST_F(Apply, keepsARecordOfTheEdit) {
    EXPECT_EQ(run("corvid apply edited.xml clip.mxf --in-place --log log.json").status, 0);
    const auto json = nlohmann::json::parse(shop.read("log.json"));
    EXPECT_EQ(json["document"], "edited.xml");
    EXPECT_EQ(json["version"], CORVID_TEST_VERSION);
    const std::string after = shop.read("clip.mxf");
    std::string rebuilt = before;
    for (const auto& write : json["writes"]) {
        const std::size_t offset = write["offset"];
        const std::size_t size = write["size"];
        rebuilt.replace(offset, size, after, offset, size);
    }
    EXPECT_TRUE(rebuilt == after) << "the record names every byte that has changed";
}

TEST_F(Apply, hashesTheHeaderBeforeAndAfterForItsRecord) {
    if (run("b2sum --version").status != 0) {
        GTEST_SKIP() << "no b2sum";
    }
    // The metadata is all that follows the pack and its fill.
    const std::string hash = "tail -c +513 clip.mxf | b2sum -l 256 | cut -c 1-64 | tr -d '\\n'";
    const std::string old = run(hash).out;
    run("corvid apply edited.xml clip.mxf --in-place --log log.json");
    const auto json = nlohmann::json::parse(shop.read("log.json"));
    ASSERT_EQ(json["headerHashes"].size(), 1U);
    EXPECT_EQ(json["headerHashes"][0]["partition"], 0);
    EXPECT_EQ(json["headerHashes"][0]["before"], old);
    EXPECT_EQ(json["headerHashes"][0]["after"], run(hash).out);
    EXPECT_NE(json["headerHashes"][0]["after"], old);
    EXPECT_FALSE(json.contains("essenceHash"));
}

TEST_F(Apply, hashesTheEssenceWhichStaysTheSame) {
    const auto essenceIn = [](const std::string& text) {
        const auto at = text.find("essence and index tables: BLAKE2b-256 ");
        return at == std::string::npos ? text : text.substr(at);
    };
    const std::string hash =
        essenceIn(run("corvid apply small.xml small.mxf --dry-run --hash").out);
    EXPECT_EQ(essenceIn(run("corvid apply long.xml small.mxf -o new.mxf --hash").out), hash);
    EXPECT_EQ(essenceIn(run("corvid apply long.xml small.mxf --in-place --hash").out), hash);
    const auto json = nlohmann::json::parse(
        run("corvid to-xml new.mxf | corvid apply - new.mxf --in-place --hash --json").out);
    EXPECT_THAT(hash, HasSubstr(json["essenceHash"].get<std::string>() + "\n"));
    std::string other = shop.read("new.mxf");
    other[other.find(std::string(100, '\xEE')) + 50] = 'x';
    shop.write("other.mxf", Bytes(other.begin(), other.end()));
    EXPECT_NE(
        essenceIn(run("corvid to-xml other.mxf | corvid apply - other.mxf --in-place --hash").out),
        hash);
}

TEST_F(Apply, namesPackingListsBesideTheClip) {
    const auto write = [this](const std::string& name, const std::string& text) {
        shop.write(name, Bytes(text.begin(), text.end()));
    };
    write("PKL_1.xml", "<?xml version='1.0'?>\n<PackingList xmlns='urn:x'/>");
    write("b.xml", "<pkl:PackingList xmlns:pkl='urn:x'/>");
    write("CPL.xml", "<CompositionPlaylist>no <!-- of a PackingList -->");
    for (const char* line : {"corvid apply edited.xml clip.mxf --dry-run",
                             "corvid apply edited.xml clip.mxf --in-place"}) {
        const std::string messages = run(line).err;
        EXPECT_THAT(messages,
                    AllOf(HasSubstr("note: the packing list PKL_1.xml is beside"),
                          HasSubstr("has changed under the same identifier"),
                          HasSubstr("the packing list b.xml"), HasSubstr("the playlist CPL.xml"),
                          Not(HasSubstr("packing list CPL"))));
    }
    EXPECT_EQ(run("corvid apply small.xml small.mxf --in-place").err, "") << "nothing changes";
    EXPECT_EQ(run("corvid apply long.xml small.mxf -o new.mxf").err, "");
    for (const char* name : {"c.xml", "d.xml"}) {
        write(name, "<PackingList>");
    }
    EXPECT_THAT(run("corvid apply long.xml small.mxf --in-place").err,
                HasSubstr("note: the same for 1 more"));
}

TEST_F(Apply, namesWhatElseBesideTheClipBecomesUntrue) {
    enum class Named : unsigned char { always, ifLonger, never };
    const struct {
        std::string name;
        std::string content;
        Named named;
    } files[] = {
        {"small.mxf.md5", "", Named::always},
        {"all.mhl", "", Named::always},
        {"comp.xml", "<?xml?><!-- <AssetMap> --><c:CompositionPlaylist>", Named::always},
        {"small.mxf.ffindex", "", Named::ifLonger},
        {"small.lwi", "", Named::ifLonger},
        {"ASSETMAP.xml", "<!-- <PackingList> -->\n<AssetMap/>", Named::ifLonger},
        {"other.lwi", "", Named::never},
        {"clip.mxf.md5", "", Named::never}, // there is such a clip
        {"clip.sha1", "", Named::never},
        {"other.xxh64", "", Named::never},
        {"small.txt", "", Named::never},
        {"note.xml", "<Note><PackingList/>", Named::never},
    };
    for (const auto& file : files) {
        shop.write(file.name, Bytes(file.content.begin(), file.content.end()));
    }
    std::filesystem::create_directory(shop.path() / "ascmhl");
    const std::string fits =
        run("corvid set small.mxf 'Identification/ApplicationSupplierName=B company' "
            "--no-identification")
            .err;
    const std::string longer =
        run("corvid set small.mxf Identification/ApplicationSupplierName=" + std::string(3000, 'n'))
            .err;
    EXPECT_THAT(fits, HasSubstr("ascmhl is beside"));
    for (const auto& file : files) {
        const std::string text = " " + file.name + " is beside";
        EXPECT_EQ(fits.find(text) != std::string::npos, file.named == Named::always) << text;
        EXPECT_EQ(longer.find(text) != std::string::npos, file.named != Named::never) << text;
    }
}

TEST_F(Apply, closesTheHeader) {
    const Bytes metadata =
        join({standardPrimer(), set(structuralKey(prefaceSet), 1, {property(0x3B03, uuid(2))}),
              set(structuralKey(contentStorageSet), 2), fill(400)});
    PartitionSpec header =
        headerPartition(join({standardPrimer(), set(structuralKey(prefaceSet), 1), fill(300)}));
    header.status = 1;
    shop.write(
        "open.mxf",
        MxfBuilder().add(header).add(footerPartition(metadata)).withRandomIndexPack().build());
    run("corvid to-xml open.mxf -o open.xml");
    const Outcome shown = run("corvid apply open.xml open.mxf --dry-run --close-header");
    EXPECT_EQ(shown.status, 1) << shown.err;
    EXPECT_THAT(shown.out, AllOf(HasSubstr("in the header, which is closed:\nchanged Preface"),
                                 HasSubstr("added ContentStorage"),
                                 HasSubstr(", the header closed and complete, in partition 0")));
    const Outcome done = run("corvid apply open.xml open.mxf --in-place --close-header --json");
    EXPECT_EQ(done.status, 0) << done.err;
    EXPECT_EQ(nlohmann::json::parse(done.out)["setsOfClosedHeader"].size(), 2U);
    EXPECT_EQ(shop.read("open.mxf")[14], 4) << "the status in the key of the pack";
    EXPECT_TRUE(run("corvid to-xml open.mxf --partition header").out == shop.read("open.xml"));
    EXPECT_EQ(run("corvid apply open.xml open.mxf --in-place --close-header").out, "no change\n");
    EXPECT_THAT(run("corvid apply doc.xml clip.mxf --in-place --close-header").out, "no change\n");
}

TEST_F(Apply, isUndone) {
    EXPECT_EQ(run("corvid apply edited.xml clip.mxf --in-place --undo undo").status, 0);
    EXPECT_FALSE(shop.read("clip.mxf") == before);
    const Outcome outcome = run("corvid recover clip.mxf --from undo");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_TRUE(shop.read("clip.mxf") == before);
    EXPECT_EQ(run("corvid recover clip.mxf --from undo").status, 1) << "it is undone already";
    EXPECT_TRUE(shop.read("clip.mxf") == before);
}

TEST_F(Apply, isNotUndoneWhereTheClipHasChangedSince) {
    run("corvid apply edited.xml clip.mxf --in-place --undo undo");
    run("corvid to-xml clip.mxf -o second.xml && sed -i 's/Camera 1/Camera 2/' second.xml");
    EXPECT_EQ(run("corvid apply second.xml clip.mxf --in-place").status, 0);
    const std::string changed = shop.read("clip.mxf");
    const Outcome outcome = run("corvid recover clip.mxf --from undo");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("has changed since"));
    EXPECT_TRUE(shop.read("clip.mxf") == changed);
}

TEST_F(Apply, growsAClipWhereThereIsNoRoom) {
    run("chmod 640 small.mxf && ln small.mxf link.mxf");
    const Outcome outcome = run("corvid apply long.xml small.mxf --in-place --reserve 0");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, AllOf(HasSubstr("bytes longer"), HasSubstr("partition 0 (header"),
                                   HasSubstr("and partition 1 (footer")));
    const std::string after = shop.read("small.mxf");
    EXPECT_GT(after.size(), 2 * 6000 + roomless().size());
    EXPECT_THAT(after, HasSubstr(std::string(5000, '\xEE')));
    for (const char* partition : {"header", "footer"}) {
        const std::string text =
            run(std::string("corvid to-xml small.mxf --partition ") + partition).out;
        EXPECT_THAT(text, HasSubstr(std::string(3000, 'n'))) << partition;
    }
    EXPECT_EQ(run("corvid check small.mxf").err, "");
    EXPECT_EQ(run("stat -c %a small.mxf").out, "640\n");
    EXPECT_TRUE(shop.read("link.mxf") == after) << "it is the same file still";
}

TEST_F(Apply, isNotUndoneWithTheRecoveryFileOfGrowth) {
    if (run("strace -V").status != 0) {
        GTEST_SKIP() << "no strace";
    }
    run("strace -qq -o /dev/null -e inject=unlink,unlinkat:signal=KILL:when=1 "
        "corvid apply long.xml small.mxf --in-place");
    ASSERT_TRUE(shop.has(".small.mxf.corvid-recovery"));
    const std::string after = shop.read("small.mxf");
    run("mv .small.mxf.corvid-recovery undo");
    const Outcome outcome = run("corvid recover small.mxf --from undo");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("of an edit that made the clip longer"));
    EXPECT_TRUE(shop.read("small.mxf") == after);
}

TEST_F(Apply, saysWhereOnlyTheRecordOfTheEditNeedsRoom) {
    const std::string note = "longer only for the record of the edit";
    run("sed 's/A company/B company/' small.xml >other.xml");
    const std::string dry = "corvid apply other.xml small.mxf --dry-run";
    EXPECT_THAT(run(dry).err, HasSubstr(note));
    EXPECT_EQ(run(dry + " --no-identification").err, "");
    EXPECT_EQ(run("corvid apply long.xml small.mxf --dry-run").err, "");
    EXPECT_EQ(run("corvid apply edited.xml clip.mxf --dry-run").err, "");
}

TEST_F(Apply, warnsBeforeItMovesEssenceOfAnEditingSystem) {
    PartitionSpec header = headerPartition(objectMetadata(20 + 88)); // after the pack
    header.behindMetadata = klv(essenceKey(), repeat(0xEE, 5000));
    shop.write("objects.mxf",
               MxfBuilder().add(header).add(footerPartition()).withRandomIndexPack().build());
    const std::string old = shop.read("objects.mxf");
    const std::string schemes = "\"Preface/DescriptiveSchemes=$(for i in $(seq COUNT); do echo "
                                "06.0e.2b.34.04.01.01.01.0d.01.04.01.01.01.01.00; done)\"";
    const auto line = [&](const char* count) {
        return "corvid set objects.mxf --no-identification --warnings-as-errors " +
               std::string(schemes).replace(schemes.find("COUNT"), 5, count);
    };
    const Outcome refused = run(line("40"));
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err, HasSubstr("[essence-moves]"));
    EXPECT_TRUE(shop.read("objects.mxf") == old);
    const Outcome fits = run(line("1"));
    EXPECT_EQ(fits.status, 0) << fits.err;
    EXPECT_EQ(fits.err, "");
    EXPECT_FALSE(shop.read("objects.mxf") == old);
}

TEST_F(Apply, keepsTheTimeWhereAsked) {
    const auto clip = shop.path() / "clip.mxf";
    const auto time = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1000);
    std::filesystem::last_write_time(clip, time);
    const auto kept = std::filesystem::last_write_time(clip);
    EXPECT_EQ(run("corvid apply edited.xml clip.mxf --in-place --preserve-times").status, 0);
    EXPECT_FALSE(shop.read("clip.mxf") == before);
    EXPECT_EQ(std::filesystem::last_write_time(clip), kept);
}

TEST_F(Apply, saysSoWhereAnEarlierEditWasNotFinished) {
    EXPECT_EQ(run("corvid recover clip.mxf").out, "nothing to recover\n");
    run("corvid apply edited.xml clip.mxf --in-place --undo undo");
    const std::string after = shop.read("clip.mxf");
    run("mv undo .clip.mxf.corvid-recovery");
    for (const char* line :
         {"corvid info clip.mxf", "corvid info --json clip.mxf", "corvid check clip.mxf",
          "corvid to-xml clip.mxf", "corvid get clip.mxf @title"}) {
        EXPECT_THAT(run(line).err, HasSubstr("[unfinished-edit]")) << line;
    }
    const Outcome refused = run("corvid apply doc.xml clip.mxf --in-place");
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err, HasSubstr("run corvid recover first"));
    EXPECT_TRUE(shop.read("clip.mxf") == after);
    EXPECT_EQ(run("corvid recover clip.mxf").status, 0);
    EXPECT_TRUE(shop.read("clip.mxf") == before);
    EXPECT_THAT(run("corvid info --json clip.mxf").err, Not(HasSubstr("unfinished")));
}

TEST_F(Apply, saysSoOfAClipThatCannotBeReadMeanwhile) {
    run("corvid apply edited.xml clip.mxf --in-place --undo undo && "
        "mv undo .clip.mxf.corvid-recovery");
    shop.write("clip.mxf", repeat(0, 100000)); // where blocks are inserted, and nothing is written
    for (const char* line :
         {"corvid info clip.mxf", "corvid info --json clip.mxf", "corvid check clip.mxf",
          "corvid to-xml clip.mxf", "corvid to-json clip.mxf", "corvid get clip.mxf @title",
          "corvid diff clip.mxf clip.mxf", "corvid report clip.mxf -o page.html"}) {
        const Outcome outcome = run(line);
        EXPECT_NE(outcome.status, 0) << line;
        EXPECT_THAT(outcome.err, HasSubstr("[unfinished-edit]")) << line;
    }
}

TEST_F(Apply, leavesAClipAloneThatAnotherProgramHasLocked) {
    Corvid::mxf::SystemFiles files;
    const auto path = (shop.path() / "clip.mxf").string();
    run("cp clip.mxf other.mxf && corvid apply edited.xml other.mxf --in-place --undo undo && "
        "mv undo .other.mxf.corvid-recovery");
    const Corvid::mxf::OpenFile locked(files, path, Corvid::mxf::FileSystem::Access::write);
    locked.lock();
    const Outcome refused = run("corvid apply edited.xml clip.mxf --in-place");
    EXPECT_EQ(refused.status, 3);
    EXPECT_THAT(refused.err, HasSubstr("another program has locked " + path));
    EXPECT_TRUE(shop.read("clip.mxf") == before);
    EXPECT_FALSE(shop.has(".clip.mxf.corvid-recovery"));
    EXPECT_EQ(run("corvid apply edited.xml clip.mxf -o new.mxf").status, 0);
}

TEST_F(Apply, doesNotTakeAClipForDamagedThatChangesWhileItIsRead) {
    // The document is opened when the clip is.
    const Outcome outcome =
        run("mkfifo document; corvid apply document clip.mxf --in-place & exec 3>document; "
            "head -c 100000 /dev/zero >clip.mxf; cat edited.xml >&3; exec 3>&-; wait $!");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("clip.mxf has changed while it was read"));
    EXPECT_EQ(shop.read("clip.mxf"), std::string(100000, '\0'));
}

TEST_F(Apply, leavesAClipAloneThatIsBeingWritten) {
    Corvid::mxf::SystemFiles files;
    const auto path = (shop.path() / "clip.mxf").string();
    {
        const Corvid::mxf::OpenFile leased(files, path, Corvid::mxf::FileSystem::Access::write);
        leased.lease();
    }
    if (files.lastLease() == Corvid::mxf::SystemFiles::Lease::unknown) {
        GTEST_SKIP() << "the file system of temporary files has no leases";
    }
    const Corvid::mxf::OpenFile recorder(files, path, Corvid::mxf::FileSystem::Access::write);
    const Outcome refused = run("corvid apply edited.xml clip.mxf --in-place");
    EXPECT_EQ(refused.status, 3);
    EXPECT_THAT(refused.err, HasSubstr("another program has " + path + " open to write it"));
    EXPECT_TRUE(shop.read("clip.mxf") == before);
    EXPECT_EQ(run("ls -A | grep -c recovery").out, "0\n");
}

TEST_F(Apply, warnsOnlyWhereAnotherProgramReadsTheClip) {
    const Outcome alone = run("corvid apply edited.xml clip.mxf --in-place");
    EXPECT_EQ(alone.status, 0);
    if (alone.err.find("grants no lease") != std::string::npos) {
        GTEST_SKIP() << "the file system of temporary files has no leases";
    }
    EXPECT_EQ(alone.err, "");
    const Outcome read = run("corvid set clip.mxf MaterialPackage/PackageName=Other 3<clip.mxf");
    EXPECT_EQ(read.status, 0);
    EXPECT_THAT(read.err, HasSubstr("may have read it half edited [open-elsewhere]"));
}

TEST_F(Apply, saysSoWhereTheFileSystemHasNoLocks) {
    if (run("strace -V").status != 0) {
        GTEST_SKIP() << "no strace";
    }
    const Outcome outcome = run("strace -qq -o /dev/null -e inject=fcntl:error=ENOLCK "
                                "corvid apply edited.xml clip.mxf --in-place");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err, HasSubstr("the file system has no locks"));
    EXPECT_THAT(outcome.err, HasSubstr("[not-locked]"));
    EXPECT_FALSE(shop.read("clip.mxf") == before);
}

TEST_F(Apply, saysSoWhereTheSystemGrantsNoLease) {
    if (run("strace -V").status != 0) {
        GTEST_SKIP() << "no strace";
    }
    const std::string edit = " -o calls corvid apply edited.xml clip.mxf --in-place";
    run("cp clip.mxf copy.mxf; strace -qq -e trace=fcntl" + edit + "; mv copy.mxf clip.mxf");
    const std::string number = run("grep -n F_SETLEASE,.F_WRLCK calls | cut -d: -f1").out;
    ASSERT_NE(number, "");
    const Outcome outcome =
        run("strace -qq -e inject=fcntl:error=EINVAL:when=" + number.substr(0, number.find('\n')) +
            edit);
    EXPECT_THAT(outcome.err, HasSubstr("the system grants no lease on the clip"));
    EXPECT_THAT(outcome.err, HasSubstr("[not-locked]"));
    EXPECT_FALSE(shop.read("clip.mxf") == before);
}

TEST_F(Apply, keepsItsRecoveryFileWhereAsked) {
    if (run("strace -V").status != 0) {
        GTEST_SKIP() << "no strace";
    }
    run("mkdir elsewhere");
    // It dies when it removes the pointer: the edit is done but for that.
    run("strace -qq -o /dev/null -e inject=unlink,unlinkat:signal=KILL:when=1 "
        "corvid apply edited.xml clip.mxf --in-place --recovery-dir elsewhere");
    EXPECT_FALSE(shop.read("clip.mxf") == before);
    EXPECT_THAT(run("ls -A elsewhere").out, HasSubstr(".corvid-recovery"));
    EXPECT_THAT(shop.read(".clip.mxf.corvid-recovery"), HasSubstr("/elsewhere/.clip.mxf-"));
    EXPECT_THAT(run("corvid check clip.mxf").err, HasSubstr("[unfinished-edit]"));
    EXPECT_EQ(run("corvid recover clip.mxf").out, "the clip is as it was before the edit\n");
    EXPECT_TRUE(shop.read("clip.mxf") == before);
    EXPECT_EQ(run("ls -A elsewhere").out, "");
    EXPECT_EQ(run("corvid apply edited.xml clip.mxf --in-place --recovery-dir elsewhere").status,
              0);
    EXPECT_EQ(run("ls -A elsewhere").out, "");
    EXPECT_FALSE(shop.has(".clip.mxf.corvid-recovery"));
}

TEST_F(Apply, isFinishedWhereAsked) {
    run("corvid apply edited.xml clip.mxf --in-place --undo undo");
    const std::string after = shop.read("clip.mxf");
    run("mv undo .clip.mxf.corvid-recovery");
    EXPECT_EQ(run("corvid recover clip.mxf --complete").status, 0);
    EXPECT_TRUE(shop.read("clip.mxf") == after);
}

/// What is refused, with the status and a part of the message.
struct Refused {
    const char* name;
    const char* line;
    int status;
    const char* message;
};

void PrintTo(const Refused& each, std::ostream* out) { *out << each.name; }

class ApplyRefuses : public Apply, public ::testing::WithParamInterface<Refused> {};

TEST_P(ApplyRefuses, andWritesNothing) {
    run("sed 's/<rp210:TrackID>2</<rp210:TrackID>99</' doc.xml >technical.xml");
    run("sed 's/rp210:PackageName/rp210:PackageNmae/' doc.xml >mistaken.xml");
    run("ln clip.mxf link.mxf");
    const std::string small = shop.read("small.mxf");
    run("sed 's/Test picture and tone/" + std::string(40000, 'n') + "/' doc.xml >longer.xml");
    const Outcome outcome = run(GetParam().line);
    EXPECT_EQ(outcome.status, GetParam().status) << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr(GetParam().message));
    EXPECT_TRUE(shop.read("clip.mxf") == before);
    EXPECT_TRUE(shop.read("small.mxf") == small);
    EXPECT_FALSE(shop.has("new.mxf"));
    EXPECT_FALSE(shop.has("undo"));
}

INSTANTIATE_TEST_SUITE_P(
    , ApplyRefuses,
    ::testing::Values(
        Refused{"NoDestination", "corvid apply edited.xml clip.mxf", 2, "--in-place"},
        Refused{"TwoDestinations", "corvid apply edited.xml clip.mxf --in-place -o new.mxf", 2,
                "exclude each other"},
        Refused{"StandardInputAsClip", "corvid apply edited.xml - --in-place <clip.mxf", 2,
                "not standard input"},
        Refused{"StandardOutput", "corvid apply edited.xml clip.mxf -o -", 2,
                "not to standard output"},
        Refused{"TheClipAsNewFile", "corvid apply edited.xml clip.mxf -o ./link.mxf", 2,
                "--in-place changes a clip"},
        Refused{"AMistake", "corvid apply mistaken.xml clip.mxf --in-place", 1,
                "mistaken.xml: line "},
        Refused{"ATechnicalChange", "corvid apply technical.xml clip.mxf --in-place", 1,
                "TimelineTrack/TrackID (2 times); --allow-technical"},
        Refused{"ATooLongValue", "corvid apply longer.xml clip.mxf --in-place", 1, "65535"},
        Refused{"GrowthThatCanNotBeUndone",
                "corvid apply long.xml small.mxf --in-place --undo undo", 1,
                "only an edit in place can be undone"},
        Refused{"APartitionWithoutMetadata",
                "corvid apply edited.xml clip.mxf --in-place --partitions 9", 1, "partition 9"},
        Refused{"OneFileForUndoAndLog",
                "corvid apply edited.xml clip.mxf --in-place --undo undo --log undo", 2,
                "a file each"},
        Refused{"OneFileForUndoAndLogByOtherPaths",
                "corvid apply edited.xml clip.mxf --in-place --undo undo --log ./undo", 2,
                "a file each"},
        Refused{"OneFileForOutputAndLog",
                "corvid apply edited.xml clip.mxf -o new.mxf --log ./new.mxf", 2, "a file each"},
        Refused{"AFolderAsClip", "corvid apply edited.xml . --in-place", 3,
                "not a file that can be changed"},
        Refused{"APipeAsClip", "mkfifo pipe; corvid apply edited.xml pipe --in-place", 3,
                "not a file that can be changed"},
        Refused{"NoRecoveryFolder",
                "corvid apply edited.xml clip.mxf --in-place --recovery-dir none", 2, "none"},
        Refused{"NoClip", "corvid apply edited.xml none.mxf --in-place", 3, "none.mxf"},
        Refused{"NoDocument", "corvid apply none.xml clip.mxf --in-place", 3, "none.xml"},
        Refused{"ADocumentAsClip", "corvid apply edited.xml doc.xml --in-place", 1, "not an MXF"},
        Refused{"AnUnwritableLog",
                "corvid apply edited.xml clip.mxf --in-place --log none/log.json", 3, "none/"}),
    [](const auto& each) { return each.param.name; });

} // namespace
