#include "tests/XMLBuilder/Things.h"
#include "tests/support/Paths.h"

#include <fstream>

namespace Corvid::Testing {
namespace {

using testing::StartsWith;
using XML2Partition::getPartitionMetadataFromBuffer;
using XML2Partition::getPartitionMetadataFromFile;
using XML2Partition::getPartitionMetadataFromString;

class BadInput : public Things {
protected:
    /// What all three forms say about the bytes: the same, but for the place where they say it.
    template <class Exception = Exceptions::ParseError>
    std::string failureOfAllForms(const std::string& bytes) {
        const Failure fromBuffer = failureOf<Exception>([&] { readXml(model_, bytes); });
        const Failure fromText = failureOf<Exception>(
            [&] { getPartitionMetadataFromString(Platform::fromUtf8(bytes), &model_.partition); });
        const Failure fromFile = failureOf<Exception>([&] { readFile(bytes); });
        EXPECT_EQ(fromText.message, fromBuffer.message);
        EXPECT_EQ(fromFile.message, fromBuffer.message);
        return fromBuffer.message;
    }

    XML2Partition::SetList readFile(const std::string& bytes) {
        const TemporaryDir folder;
        const auto path = folder.path() / "document.xml";
        std::ofstream(path, std::ios::binary) << bytes;
        return getPartitionMetadataFromFile(Platform::fromUtf8(path.string()).c_str(),
                                            &model_.partition);
    }

    void expectNothingMade() {
        EXPECT_EQ(model_.partition.size(), 0U);
        EXPECT_EQ(model_.partition.darkBegin(), model_.partition.darkEnd());
    }

    /// A small document that has something of everything.
    static std::string everything() {
        return "<?xml version='1.0'?><!-- c -->" +
               documentOf(
                   "<t:Thing rp210:InstanceUID='1'><e:UInt8>5</e:UInt8>"
                   "<e:UTF16String>&lt;\xC3\xA9&#x20AC;<![CDATA[x]]></e:UTF16String>"
                   "<e:StrongReference><t:Other_REF types:TargetInstance='2'/>"
                   "</e:StrongReference><e:Rational><types:Numerator>1</types:Numerator>"
                   "</e:Rational><e:UInt8Array><e:Element>1</e:Element></e:UInt8Array>"
                   "<groups:ExtensionElements><e:OtherNumber>1</e:OtherNumber>"
                   "<groups:DarkElement groups:StaticLocalTag='80.01'>0a</groups:DarkElement>"
                   "</groups:ExtensionElements></t:Thing><groups:FloatingDarkMetadata>"
                   "<t:Other rp210:InstanceUID='2'/><groups:DarkMetadata groups:Key='"
                   "00.01.02.03.04.05.06.07.08.09.0a.0b.0c.0d.0e.0f' "
                   "groups:BEROctetCount='4'>0a0b</groups:DarkMetadata>"
                   "</groups:FloatingDarkMetadata>");
    }
};

TEST_F(BadInput, thatIsNoXmlIsRefused) {
    for (const char* text : {"no XML at all",
                             "{\"a\": 1}",
                             "   ",
                             "\n",
                             "<",
                             "<?xml version='1.0'?>",
                             "<!-- only this -->",
                             "text <a/>",
                             "<a/> text",
                             "<a/><a/>",
                             "</a>",
                             "<a></b>",
                             "<a b/>",
                             "<a b='1' b='2'/>",
                             "<1/>",
                             "<a>&none;</a>",
                             "<a>&#0;</a>",
                             "<a>\x01</a>",
                             "<p:a/>",
                             "<a>]]></a>"}) {
        EXPECT_THAT(failureOfAllForms(text), StartsWith("class xercesc_3_0::SAXException: line "))
            << text;
    }
    expectNothingMade();
}

TEST_F(BadInput, thatIsEmptyIsRefused) {
    const char* message = "class xercesc_3_0::SAXException: line 1, column 1: empty document, "
                          "expected a root element";
    const auto fails = [&](auto read) {
        EXPECT_EQ(failureOf<Exceptions::ParseError>(read).message, message);
    };
    fails([&] { getPartitionMetadataFromBuffer(nullptr, 0, &model_.partition); });
    fails([&] { readXml(model_, ""); });
    fails([&] { getPartitionMetadataFromString({}, &model_.partition); });
    failureOf<Exceptions::ParseError>([&] { readFile(""); });
    failureOf<Exceptions::InvalidArgument>(
        [&] { getPartitionMetadataFromBuffer(nullptr, 1, &model_.partition); });
    expectNothingMade();
}

TEST_F(BadInput, ofAPathThatIsNoFileIsRefused) {
    const TemporaryDir folder;
    const auto failureOfPath = [&](const std::string& path) {
        return failureOf<Exceptions::IOError>([&] {
                   getPartitionMetadataFromFile(Platform::fromUtf8(path).c_str(),
                                                &model_.partition);
               })
            .message;
    };
    const std::string path = folder.path().string();
    EXPECT_EQ(failureOfPath(path), path + ": is a directory, expected a file");
    EXPECT_EQ(failureOfPath(path + "/none.xml"), path + "/none.xml: no such file");
    EXPECT_EQ(failureOfPath(path + "/none/none.xml"), path + "/none/none.xml: no such file");
    EXPECT_EQ(failureOfPath(""), "XML document: no path, expected the path of a file");
    failureOf<Exceptions::IOError>(
        [&] { getPartitionMetadataFromFile(nullptr, &model_.partition); });
}

TEST_F(BadInput, thatIsCutOffAnywhereIsRefusedBeforeAnythingIsMade) {
    const std::string xml = everything();
    for (std::size_t size = 0; size != xml.size(); ++size) {
        SCOPED_TRACE(size);
        failureOf<Exceptions::ParseError>([&] { readXml(model_, xml.substr(0, size)); });
    }
    const Utf16Text text = Platform::fromUtf8(xml);
    for (std::size_t size = 0; size != text.size(); ++size) {
        SCOPED_TRACE(size);
        failureOf<Exceptions::ParseError>([&] {
            getPartitionMetadataFromString(Utf16Text(text.c_str(), size), &model_.partition);
        });
    }
    expectNothingMade();
    EXPECT_EQ(readXml(model_, xml).size(), 2U);
}

TEST_F(BadInput, withAnyByteChangedIsReadOrRefused) {
    const std::string xml = everything();
    for (std::size_t i = 0; i != xml.size(); ++i) {
        for (const char byte : {'\0', '<', '\xFF'}) {
            std::string changed = xml;
            changed[i] = byte;
            Model model(model_.partition.partitionDictionary().dictionary());
            try {
                readXml(model, changed);
            } catch (const Exceptions::BaseException& e) {
                EXPECT_NE(*e.message(), 0) << i;
            }
        }
    }
}

} // namespace
} // namespace Corvid::Testing
