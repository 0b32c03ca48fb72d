#include "tests/XMLBuilder/RoundTrip.h"
#include "tests/XMLBuilder/Things.h"

#include <fstream>

namespace Corvid::Testing {
namespace {

using XMLUtils::EncodingType;
using XMLUtils::Layout;

constexpr EncodingType encodings[] = {EncodingType::utf8, EncodingType::utf16,
                                      EncodingType::utf16LE, EncodingType::utf16BE};
constexpr Layout layouts[] = {Layout::indented, Layout::compact};

using Dictionary = Templates::SharedPtr<MetaMetadata::Dictionary>;

/// Reads into a partition of its own what the body reads, and writes it.
template <class Read> std::string readAndWritten(const Dictionary& dictionary, Read read) {
    Metadata::PartitionMetadata partition(dictionary);
    read(&partition);
    return withoutIdentifiers(documentOf(partition, {}));
}

/// The metadata comes back the same through every form of text and file.
class Forms {
public:
    explicit Forms(Metadata::PartitionMetadata& partition)
        : partition_(partition), dictionary_(partition.partitionDictionary().dictionary()),
          document_(XMLBuilder::partition2XML(&partition, false, false)) {
        const std::string xml = documentOf(partition, {});
        expected_ = readAndWritten(dictionary_, [&](Metadata::PartitionMetadata* to) {
            XML2Partition::getPartitionMetadataFromBuffer(
                reinterpret_cast<const unsigned char*>(xml.data()),
                static_cast<unsigned>(xml.size()), to);
        });
    }

    void expectThroughText(EncodingType encoding) {
        Utf16Text text;
        XMLBuilder::partition2XML(&partition_, false, false, encoding, text);
        expectSame([&](auto* to) { XML2Partition::getPartitionMetadataFromString(text, to); });
        const auto* preface =
            partition_.find(Metadata::Structural::StructuralMetadataKeys::preface()).front();
        Utf16Text same;
        XMLBuilder::partition2XML(&partition_, preface, false, false, encoding, same);
        EXPECT_TRUE(same == text);
    }

    void expectThroughText(EncodingType encoding, Layout layout) {
        Utf16Text text;
        XMLUtils::domToBuffer(document_.get(), text, encoding, layout);
        expectSame([&](auto* to) { XML2Partition::getPartitionMetadataFromString(text, to); });
    }

    void expectThroughAFile(EncodingType encoding, Layout layout) {
        XMLUtils::ReplaceInvalidCharacters invalid;
        DataIO::Memory::MemoryDataSink sink;
        XMLUtils::serialise(document_.get(), encoding, layout, invalid, sink);
        const TemporaryDir folder;
        const auto path = folder.path() / "document.xml";
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(sink.rawBuffer()),
                   static_cast<std::streamsize>(sink.serializedSize()));
        expectSame([&](auto* to) {
            XML2Partition::getPartitionMetadataFromFile(Platform::fromUtf8(path.string()).c_str(),
                                                        to);
        });
    }

private:
    template <class Read> void expectSame(Read read) {
        const std::string found = readAndWritten(dictionary_, read);
        EXPECT_TRUE(found == expected_) << difference(expected_, found);
    }

    Metadata::PartitionMetadata& partition_;
    Dictionary dictionary_;
    Templates::auto_ptr<xercesc::DOMNode> document_;
    std::string expected_;
};

class TextForms : public Things, public testing::WithParamInterface<EncodingType> {
protected:
    TextForms() {
        model_.reference(model_.set("Preface", 1), "ContentStorageObject", 2);
        auto& thing = model_.set("Thing", 2);
        model_.value(thing, "UTF16String",
                     Types::UTF16String(
                         Platform::fromUtf8(" <\xC3\xA9&\r\n\t\xF0\x9F\x8E\xA5>]]> ").c_str()));
        model_.value(thing, "ISO7String", Types::ISO7String("\n \"'\xE9"));
        model_.value(thing, "Rational", Types::Rational(-1, 0));
        model_.value(thing, "UInt64", Types::UInt64(18446744073709551615U));
        model_.reference(thing, "WeakReference", 99);
        model_.misplaced<Metadata::SimpleElement>(thing, "OtherNumber")
            .set(Types::UInt8(7).clone());
        model_.unknown(thing, 0x7F01, "bytes");
        auto numbers = Templates::auto_ptr<Types::Collection>(new Types::Array(2));
        numbers->add(Types::UInt16(65535).clone());
        model_.element<Metadata::CollectionElement>(thing, "UInt16Array").set(std::move(numbers));
        model_.references(thing, "StrongReferenceArray", {3, 4, 5});
        for (const Types::u8 instance : {Types::u8{3}, Types::u8{4}, Types::u8{5}, Types::u8{6}}) {
            model_.value(model_.set("Other", instance), "OtherNumber", Types::UInt8(instance));
        }
        model_.darkSet(Model::darkKey(), 9, "dark");
    }
};

TEST_P(TextForms, bringBackEverything) {
    Forms forms(model_.partition);
    forms.expectThroughText(GetParam());
    for (const Layout layout : layouts) {
        forms.expectThroughText(GetParam(), layout);
        forms.expectThroughAFile(GetParam(), layout);
    }
}

/// Whether a text can hold every character of the metadata.
bool fitsXml(Metadata::PartitionMetadata& partition) {
    try {
        Utf16Text text;
        XMLBuilder::partition2XML(&partition, false, false, EncodingType::utf8, text);
        return true;
    } catch (const Exceptions::InvalidFormat&) {
        return false;
    }
}

TEST_P(TextForms, bringBackTheMetadataOfRealFiles) {
    if (samplesDir().empty()) {
        GTEST_SKIP() << "no folder of sample files";
    }
    int withoutText = 0;
    forEachSample([&](Metadata::PartitionMetadata& partition) {
        Forms forms(partition);
        for (const Layout layout : layouts) {
            forms.expectThroughAFile(GetParam(), layout);
        }
        if (!fitsXml(partition)) {
            ++withoutText;
            return;
        }
        forms.expectThroughText(GetParam());
        forms.expectThroughText(GetParam(), Layout::compact);
    });
    EXPECT_LE(withoutText, 1);
}

std::string nameOf(const testing::TestParamInfo<EncodingType>& info) {
    static const char* const names[] = {"utf8", "utf16", "utf16LE", "utf16BE"};
    return names[static_cast<int>(info.param)];
}

INSTANTIATE_TEST_SUITE_P(, TextForms, testing::ValuesIn(encodings), nameOf);

} // namespace
} // namespace Corvid::Testing
