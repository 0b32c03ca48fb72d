#include "XMLBuilder/format/DefinitionName.h"
#include "XMLBuilder/format/DictionaryNames.h"
#include "tests/XMLBuilder/Things.h"
#include "tests/support/Paths.h"

#include <atomic>
#include <condition_variable>
#include <fstream>
#include <functional>
#include <future>
#include <mutex>
#include <set>
#include <thread>

namespace Corvid::Testing {
namespace {

using XML2Partition::getPartitionMetadataFromFile;
using XML2Partition::getPartitionMetadataFromString;
using XMLBuilder::partition2XML;

/// Lets that many threads go on together.
class Start {
public:
    explicit Start(std::size_t threads) : missing_(threads) {}

    void wait() {
        std::unique_lock<std::mutex> lock(mutex_);
        if (--missing_ == 0) {
            all_.notify_all();
        }
        all_.wait(lock, [this] { return missing_ == 0; });
    }

private:
    std::mutex mutex_;
    std::condition_variable all_;
    std::size_t missing_;
};

/// Runs the works side by side, each over and over.
void runSideBySide(int rounds, const std::vector<std::function<void()>>& works) {
    Start start(works.size());
    std::vector<std::thread> threads;
    threads.reserve(works.size());
    for (const auto& work : works) {
        threads.emplace_back([&start, &work, rounds] {
            start.wait();
            for (int i = 0; i != rounds; ++i) {
                work();
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

/// A model of some sets with values of many forms, references, extensions and a dark set.
void fill(Model& model) {
    auto& preface = model.set("Preface", 1);
    model.value(preface, "FormatVersion", Types::VersionType(1, 3));
    model.value(preface, "FileLastModified", Types::Timestamp(2026, 1, 2, 3, 4, 5, 8));
    model.reference(preface, "ContentStorageObject", 2);
    model.unknown(preface, 0x7F01, "bytes");
    auto& storage = model.set("ContentStorage", 2);
    model.references(storage, "Packages", {3, 4});
    model.set("MaterialPackage", 3);
    model.set("SourcePackage", 4);
    model.set("Filler", 5);
    model.darkSet(Model::darkKey(), 4, "dark");
}

Utf16Text textOf(Model& model) {
    Utf16Text text;
    partition2XML(&model.partition, false, false, XMLUtils::EncodingType::utf8, text);
    return text;
}

TEST(Concurrency, startsWithEverythingAtOnce) {
    // First, so that what a process makes on first use is made by all of them together.
    const std::string xml = "<r xmlns:types='urn:SMPTE:Types:MXF'><Preface/></r>";
    const auto write = [] {
        Model model;
        fill(model);
        EXPECT_FALSE(textOf(model).empty());
    };
    const auto read = [&] {
        Model model;
        EXPECT_EQ(readXml(model, xml).size(), 1U);
    };
    runSideBySide(1, {read, write, read, write, read, write});
}

class SideBySide : public testing::Test {
protected:
    SideBySide() {
        fill(model_);
        text_ = textOf(model_);
        const std::string bytes = Platform::toUtf8(text_);
        path_ = folder_.path() / "document.xml";
        std::ofstream(path_, std::ios::binary) << bytes;
    }

    /// Partitions of their own for each, which are written over and over.
    std::function<void()> writer() {
        auto model = std::make_shared<Model>();
        fill(*model);
        return [this, model] {
            EXPECT_TRUE(textOf(*model) == text_);
            EXPECT_TRUE(partition2XML(&model->partition, true, true));
        };
    }

    std::function<void()> textReader() {
        return [this] {
            Model model;
            EXPECT_EQ(getPartitionMetadataFromString(text_, &model.partition).size(), 5U);
            EXPECT_NE(model.partition.darkBegin(), model.partition.darkEnd());
        };
    }

    std::function<void()> fileReader() {
        return [this] {
            Model model;
            EXPECT_EQ(getPartitionMetadataFromFile(Platform::fromUtf8(path_.string()).c_str(),
                                                   &model.partition)
                          .size(),
                      5U);
        };
    }

    static std::function<void()> failingReader() {
        return [] {
            Model model;
            failureOf<Exceptions::ParseError>([&] { readXml(model, "<a><b></a>"); });
            // What has no declaration is a matter for XPath.
            failureOf<Exceptions::ParseError>([&] {
                readXml(model, "<r xmlns:rp210='urn:SMPTE:RP210'><Preface><rp210:FileLastModified>"
                               "<x/></rp210:FileLastModified></Preface></r>");
            });
        };
    }

    static std::function<void()> constantsCaller() {
        return [prefix = &XMLBuilder::getPrefix(), uri = &XMLBuilder::getNamespaceURI()] {
            EXPECT_EQ(&XMLBuilder::getPrefix(), prefix);
            EXPECT_EQ(&XMLBuilder::getNamespaceURI(), uri);
            EXPECT_EQ(Platform::toUtf8(XMLBuilder::getPrefix().utf16()), "s377m");
        };
    }

    static constexpr int rounds = 30;

    Model model_;
    Utf16Text text_;
    TemporaryDir folder_;
    std::filesystem::path path_;
};

TEST_F(SideBySide, writersWriteEachItsPartition) {
    runSideBySide(rounds, {writer(), writer(), writer(), writer()});
}

TEST_F(SideBySide, readersReadEachIntoItsPartition) {
    runSideBySide(rounds, {textReader(), fileReader(), failingReader(), textReader(), fileReader(),
                           failingReader()});
}

TEST_F(SideBySide, writersReadersAndCallersOfTheConstantsDoNotMindEachOther) {
    runSideBySide(rounds, {writer(), textReader(), constantsCaller(), writer(), fileReader(),
                           failingReader(), constantsCaller(), writer(), textReader()});
}

/// A partition that calls back in the midst of being written.
class ObservedPartition : public Metadata::PartitionMetadata {
public:
    explicit ObservedPartition(std::function<void()> observer)
        : PartitionMetadata(MetaMetadata::Dictionary::builtIn()), observer_(std::move(observer)) {
        const auto& dictionary = *PartitionMetadata::partitionDictionary().dictionary();
        const auto& key = Metadata::Structural::StructuralMetadataKeys::preface();
        // Whose label is looked up when its element is written.
        createEmptyMetadataSet(key, *dictionary.findSet(key))
            .createInvalidElement(Metadata::Element::Attribute(new MetaMetadata::UnknownAttribute(
                Types::LocalTag(0x8001), MetaMetadata::UnknownAttribute::unknownLabel)))
            .parse(Model::view("x"));
    }

    Metadata::PartitionDictionary& partitionDictionary() override {
        observer_();
        return PartitionMetadata::partitionDictionary();
    }

private:
    std::function<void()> observer_;
};

TEST(Concurrency, makesTheNamesOfAFreshDictionaryOnce) {
    constexpr int rounds = 20;
    for (int round = 0; round != rounds; ++round) {
        const auto dictionary = MetaMetadata::Dictionary::extend(
            *MetaMetadata::Dictionary::builtIn(), MetaMetadata::Dictionary::Texts());
        std::mutex mutex;
        std::set<const void*> names;
        std::set<std::string> texts;
        const auto convert = [&] {
            Model model(dictionary);
            fill(model);
            const Utf16Text text = textOf(model);
            Model copy(dictionary);
            EXPECT_EQ(getPartitionMetadataFromString(text, &copy.partition).size(), 5U);
            const auto& all = XMLBuilder::namesOf(*dictionary);
            const auto* const preface = all.findSet(u"urn:SMPTE:S377M", u"Preface");
            ASSERT_NE(preface, nullptr);
            const auto* const version = all.findProperty(u"urn:SMPTE:RP210", u"FormatVersion");
            ASSERT_NE(version, nullptr);
            const std::lock_guard<std::mutex> lock(mutex);
            names.insert({&all, &XMLBuilder::nameOf(*preface),
                          &XMLBuilder::nameOf(*preface).properties(),
                          &XMLBuilder::nameOf(*version)});
            texts.insert(Platform::toUtf8(text));
        };
        runSideBySide(1, {convert, convert, convert, convert, convert, convert});
        EXPECT_EQ(names.size(), 4U);
        EXPECT_EQ(texts.size(), 1U);
    }
}

TEST_F(SideBySide, onlyOneWriterWritesAtATime) {
    std::atomic<int> writing{0};
    std::atomic<int> written{0};
    const auto writes = [&] {
        ObservedPartition partition([&] {
            EXPECT_EQ(++writing, 1);
            std::this_thread::yield();
            --writing;
            ++written;
        });
        EXPECT_TRUE(partition2XML(&partition, false, false));
    };
    runSideBySide(rounds, {writes, writes, writes, writes});
    EXPECT_GE(written, 4 * rounds);
}

TEST_F(SideBySide, aReaderDoesNotWaitForAWriter) {
    std::promise<void> writing;
    std::promise<void> hasRead;
    std::once_flag once;
    ObservedPartition partition([&] {
        std::call_once(once, [&] {
            writing.set_value();
            // Long, because a thread that waits for the writer's end would wait for ever.
            EXPECT_EQ(hasRead.get_future().wait_for(std::chrono::minutes(2)),
                      std::future_status::ready);
        });
    });
    std::thread writer([&] { EXPECT_TRUE(partition2XML(&partition, false, false)); });
    writing.get_future().wait();
    textReader()();
    fileReader()();
    hasRead.set_value();
    writer.join();
}

} // namespace
} // namespace Corvid::Testing
