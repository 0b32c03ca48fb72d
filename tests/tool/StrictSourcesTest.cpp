#include "XMLBuilder/reader/ReadSet.h"
#include "XMLBuilder/reader/Reading.h"
#include "XMLBuilder/reader/dom/DomNodes.h"
#include "XMLBuilder/reader/nodes/NodeText.h"
#include "XMLBuilder/reader/strict/ReadStrictly.h"
#include "XMLBuilder/reader/strict/ValueRules.h"
#include "editing/WrittenDocument.h"
#include "host/dataio/OpenSource.h"
#include "host/metadata/PartitionMetadata.h"
#include "host/mxf/File.h"
#include "host/xmlutils/Initializer.h"
#include "host/xmlutils/InvalidCharacters.h"
#include "host/xmlutils/LoadDocument.h"
#include "tests/support/HeaderPartition.h"
#include "tests/support/Paths.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <memory>
#include <random>

/// The reader of documents of people reads nodes, which a stream or a DOM gives it. Both ways have
/// to give the same.
namespace Corvid::Testing {
namespace {

using XMLBuilder::Mistakes;

struct Release {
    template <class T> void operator()(T* object) const { object->release(); }
};

/// What a document gives: the bytes of the partition, or what is wrong with it without places.
struct Outcome {
    std::vector<unsigned char> bytes;
    std::vector<std::string> mistakes;
    bool isMalformed = false;
};

template <class Read> Outcome outcomeOf(Read read) {
    Metadata::PartitionMetadata partition(MetaMetadata::Dictionary::builtIn());
    Mistakes mistakes;
    Outcome outcome;
    try {
        read(partition, mistakes);
    } catch (const Exceptions::ParseError&) {
        outcome.isMalformed = true;
        return outcome;
    }
    for (const auto& entry : mistakes.entries()) {
        outcome.mistakes.push_back(entry.text);
    }
    std::sort(outcome.mistakes.begin(), outcome.mistakes.end());
    if (mistakes.count() == 0) {
        try {
            outcome.bytes = headerPartitionOf(partition);
        } catch (const Exceptions::BaseException& error) {
            outcome.mistakes = {Platform::toUtf8(error.message())};
        }
    }
    return outcome;
}

Outcome fromStream(const std::string& document) {
    return outcomeOf([&](auto& partition, Mistakes& mistakes) {
        DataIO::Memory::MemoryDataSource source(
            reinterpret_cast<const unsigned char*>(document.data()), document.size());
        XMLBuilder::readStrictly(source, partition, {}, mistakes);
    });
}

void readDom(const xercesc::DOMElement& root, Metadata::PartitionMetadata& partition,
             Mistakes& mistakes) {
    XMLBuilder::DomNodes nodes(root);
    XMLBuilder::Strictness strictness(*partition.partitionDictionary().dictionary(), nullptr,
                                      mistakes);
    XMLBuilder::Reading reading(nodes.root(), &nodes, partition, nullptr, nullptr, &strictness);
    strictness.checkRoot(nodes.root());
    XMLBuilder::SetList sets;
    for (const auto* child = root.getFirstChild(); child != nullptr;
         child = child->getNextSibling()) {
        const auto& node = nodes.copyOf(*child);
        if (node.kind == XMLBuilder::DocumentNode::Kind::element) {
            XMLBuilder::readChildOfRoot(reading, node, sets);
        } else if (node.kind == XMLBuilder::DocumentNode::Kind::text) {
            strictness.refuseStrayText(node);
        }
    }
    strictness.finish(partition);
}

Outcome fromDom(const std::string& document) {
    return outcomeOf([&](auto& partition, Mistakes& mistakes) {
        const std::unique_ptr<xercesc::DOMLSParser, Release> parser(
            XMLUtils::Initializer::instance().domImplementation()->createLSParser(
                xercesc::DOMImplementationLS::MODE_SYNCHRONOUS, nullptr));
        const xercesc::DOMDocument* made = nullptr;
        try {
            made = XMLUtils::loadCleanDocumentFromBuffer(
                reinterpret_cast<const unsigned char*>(document.data()), document.size(), *parser);
        } catch (const Exceptions::BaseException&) {
            throw;
        } catch (...) {
            throw Exceptions::ParseError("malformed", CORVID_HERE);
        }
        readDom(*made->getDocumentElement(), partition, mistakes);
    });
}

void expectTheSame(const std::string& document, const std::string& what) {
    const Outcome stream = fromStream(document);
    const Outcome dom = fromDom(document);
    EXPECT_EQ(stream.isMalformed, dom.isMalformed) << what;
    EXPECT_EQ(stream.mistakes, dom.mistakes) << what;
    EXPECT_TRUE(stream.bytes == dom.bytes) << what;
}

std::string textOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::filesystem::path> filesIn(const std::filesystem::path& folder,
                                           const std::string& extension) {
    std::vector<std::filesystem::path> files;
    if (!folder.empty() && std::filesystem::exists(folder)) {
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            if (entry.path().extension() == extension) {
                files.push_back(entry.path());
            }
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

/// The documents of a clip, in every manner.
std::vector<std::string> documentsOf(const std::filesystem::path& clip) {
    mxf::NoWarnings warnings;
    mxf::File file(DataIO::openSource(clip.string()), MetaMetadata::Dictionary::builtIn(),
                   warnings);
    const auto header = file.readMetadata();
    std::vector<std::string> documents;
    for (const bool values : {false, true}) {
        Editing::DocumentContent content;
        content.referencesAsValues = values;
        DataIO::Memory::MemoryDataSink text;
        XMLUtils::ReplaceInvalidCharacters invalid(0);
        Editing::WrittenDocument(*header.metadata, content)
            .serialise(XMLUtils::EncodingType::utf8, XMLUtils::Layout::indented, invalid, text);
        documents.emplace_back(text.rawBuffer(), text.rawBuffer() + text.serializedSize());
    }
    return documents;
}

/// Documents with some words left out, doubled or taken from elsewhere: mostly still XML.
std::string damaged(std::string document, std::mt19937& random) {
    const auto place = [&] { return random() % document.size(); };
    for (auto count = 1 + random() % 3; count != 0; --count) {
        const auto from = document.find('>', place());
        const auto to = document.find('<', from);
        if (from == std::string::npos || to == std::string::npos) {
            continue;
        }
        static const std::vector<std::string> texts = {
            "", "x", "-1", "1.5", " 2 ", "00.01", "0a", "0a0", "99999999999", "<a/>", "&amp;"};
        document.replace(from + 1, to - from - 1, texts[random() % texts.size()]);
    }
    return document;
}

TEST(StrictSources, giveTheSameForTheSeedsOfTheFuzzTargets) {
    for (const auto& path : filesIn(sourceDir() / "fuzz" / "corpus" / "Xml", ".xml")) {
        expectTheSame(textOf(path), path.filename().string());
    }
}

TEST(StrictSources, giveTheSameForRealFiles) {
    std::size_t count = 0;
    std::mt19937 random(13);
    auto clips = filesIn(samplesDir(), ".mxf");
    clips.push_back(sourceDir() / "examples" / "sample.mxf");
    for (const auto& clip : clips) {
        for (const std::string& document : documentsOf(clip)) {
            expectTheSame(document, clip.filename().string());
            for (int round = 0; round != 5; ++round) {
                expectTheSame(damaged(document, random), clip.filename().string() + " damaged");
            }
            count += 6;
        }
    }
    RecordProperty("documents", static_cast<int>(count));
    std::printf("%zu documents compared\n", count);
}

} // namespace
} // namespace Corvid::Testing
