#include "editing/StoredBytes.h"
#include "editing/supplement/ListedElements.h"
#include "editing/supplement/SupplementText.h"
#include "host/dataio/MemorySource.h"
#include "host/mxf/File.h"
#include "tests/editing/Differences.h"
#include "tests/support/HeaderPartition.h"
#include "tests/support/Model.h"
#include "tests/support/ThingsDictionary.h"
#include "tools/corvid/xml/LenientDocument.h"

#include <gmock/gmock.h>

using namespace Corvid;
using namespace Corvid::Testing;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

namespace {

std::vector<std::string> targetsIn(std::string_view document) {
    std::vector<std::string> targets;
    for (const auto& each : Editing::instructionsInFront(document)) {
        targets.push_back(each.target + ":" + std::to_string(each.line));
    }
    return targets;
}

std::string utf16(std::string_view text, bool bigEndian, bool withMark) {
    std::string bytes = withMark ? (bigEndian ? "\xFE\xFF" : "\xFF\xFE") : "";
    for (const char each : text) {
        bytes += bigEndian ? std::string{'\0', each} : std::string{each, '\0'};
    }
    return bytes;
}

TEST(InstructionsInFront, areFoundInEveryEncoding) {
    const std::string text =
        "<?xml version=\"1.0\"?>\n<?a b?>\n<!-- <?c?> -->\n <?d e=\"f\"?><r><?g?></r>";
    const auto expected = ElementsAre("xml:1", "a:2", "d:4");
    EXPECT_THAT(targetsIn(text), expected);
    EXPECT_THAT(targetsIn("\xEF\xBB\xBF" + text), expected);
    for (const bool bigEndian : {true, false}) {
        for (const bool withMark : {true, false}) {
            EXPECT_THAT(targetsIn(utf16(text, bigEndian, withMark)), expected);
        }
    }
    EXPECT_EQ(Editing::instructionsInFront(text)[2].data, " e=\"f\"");
}

TEST(InstructionsInFront, endWithTheDocumentOrItsType) {
    EXPECT_THAT(targetsIn("<?a b?><!DOCTYPE r [<?c?>]><?d?><r/>"), ElementsAre("a:1"));
    for (const std::string_view text : {"", "<", "<?", "<?a", "<!", "<!-", "<!--", "<!-- -", "x",
                                        "\xFE\xFF", "\xFE", "\xEF\xBB"}) {
        EXPECT_LE(targetsIn(text).size(), 1U) << text;
    }
}

Editing::DocumentSupplement parsed(const std::string& lines) {
    return Editing::parseSupplement(Editing::instructionsInFront(lines + "<r/>"));
}

constexpr const char* first = "<?corvid format=\"1\"?>\n";
constexpr const char* uid = "00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.02";
constexpr const char* label = "06.0e.2b.34.01.01.01.01.01.01.15.02.00.00.00.00";
constexpr const char* key = "06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.2f.00";

TEST(SupplementText, comesBackAsItWasWritten) {
    const std::string all =
        "partial structural-only=\"1\" start=\"" + std::string(uid) +
        "\"|primer tag=\"ff.fe\" label=\"" + label + "\"|key class=\"" + key + "\" key=\"" + key +
        "\"|key set=\"" + uid + "\" copy=\"1\" key=\"" + key +
        "\"|form text=\"terminated\"|form set=\"" + uid + "\" property=\"" + label +
        "\" octets=\"9\"|form class=\"" + key +
        "\" copy=\"0\" property=\"3c.0b\" nth=\"2\" item=\"16\"|bytes set=\"" + uid +
        "\" property=\"" + label + "\" nth=\"1\" hex=\"00FF\"|bytes set=\"" + uid +
        "\" property=\"80.01\" hex=\"\"|copies set=\"" + uid + "\" count=\"2\"|copies set=\"" +
        label + "\" count=\"2\" dark=\"1\"|copies set=\"" + key +
        "\" dark=\"3\"|unidentified class=\"" + key + "\" count=\"1\"";
    std::string lines = first;
    std::vector<std::string> expected{"corvid format=\"1\""};
    for (std::size_t at = 0; at < all.size();) {
        const std::size_t end = std::min(all.find('|', at), all.size());
        expected.push_back("corvid " + all.substr(at, end - at));
        lines += "<?" + expected.back() + "?>\n";
        at = end + 1;
    }
    EXPECT_EQ(Editing::toInstructions(parsed(lines)), expected);
}

TEST(SupplementText, namesItsFormatWhereThereIsNothingElseToSay) {
    EXPECT_THAT(Editing::toInstructions({}), ElementsAre("corvid format=\"1\""));
    EXPECT_TRUE(parsed(first).isThere);
    EXPECT_FALSE(parsed("<?xml version=\"1.0\"?><?other thing?>").isThere);
}

struct Refused {
    const char* name;
    std::string lines; ///< after the first
    const char* message;
};

void PrintTo(const Refused& each, std::ostream* out) { *out << each.name; }

std::string instruction(const std::string& text) { return "<?corvid " + text + "?>\n"; }
std::string property(const std::string& rest) {
    return "set=\"" + std::string(uid) + "\" property=\"" + label + "\" " + rest;
}

class RefusedSupplement : public ::testing::TestWithParam<Refused> {};

TEST_P(RefusedSupplement, isRefusedWithItsLine) {
    try {
        parsed(first + GetParam().lines);
        FAIL() << "not refused";
    } catch (const Exceptions::InvalidFormat& error) {
        const std::string message = Platform::toUtf8(error.message());
        EXPECT_THAT(message, StartsWith("line "));
        EXPECT_THAT(message, HasSubstr(GetParam().message));
    }
}

INSTANTIATE_TEST_SUITE_P(
    , RefusedSupplement,
    ::testing::Values(
        Refused{"NoKind", instruction(""), "line 2: processing instruction corvid : no kind"},
        Refused{"UnknownKind", instruction("other a=\"b\""), "other: unknown"},
        Refused{"FormatTwice", instruction("format=\"1\""), "says this already"},
        Refused{"NoAttribute", instruction("bytes"), "bytes: no set, expected one"},
        Refused{"NoQuotes", instruction("bytes hex=00"), "expected attributes as name=\"value\""},
        Refused{"NoClosingQuote", instruction("bytes hex=\"00"), "no closing quotation mark"},
        Refused{"NoSpace", instruction("primer tag=\"80.01\"label=\"x\""), "expected white space"},
        Refused{"AttributeTwice", instruction("bytes hex=\"00\" hex=\"00\""), "hex a second time"},
        Refused{"TooManyAttributes",
                instruction("bytes a=\"\" b=\"\" c=\"\" d=\"\" e=\"\" f=\"\" g=\"\" h=\"\" i=\"\""),
                "more than 8 attributes"},
        Refused{"UnknownAttribute", instruction("bytes " + property("hex=\"\" x=\"\"")),
                "unknown attribute x"},
        Refused{"OddDigits", instruction("bytes " + property("hex=\"0\"")),
                "hex: expected pairs of hexadecimal digits"},
        Refused{"NoDigits", instruction("bytes " + property("hex=\"0g\"")), "hexadecimal digits"},
        Refused{"NoIdentifier",
                instruction("bytes set=\"1\" property=\"" + std::string(label) + "\" hex=\"\""),
                "set: "},
        Refused{"NoLabel",
                instruction("bytes set=\"" + std::string(uid) + "\" property=\"x\" hex=\"\""),
                "property: "},
        Refused{"NoNumber", instruction("form " + property("octets=\"-1\"")), "octets: '-1'"},
        Refused{"NumberTooGreat", instruction("form " + property("octets=\"65536\"")),
                "65536 bytes, expected at most 65535"},
        Refused{"BytesTwice",
                instruction("bytes " + property("hex=\"00\"")) +
                    instruction("bytes " + property("hex=\"01\"")),
                "line 3: processing instruction corvid bytes: another instruction says this"},
        Refused{"BytesAndForm",
                instruction("bytes " + property("hex=\"00\"")) +
                    instruction("form " + property("octets=\"9\"")),
                "another instruction says this"},
        Refused{"TagTwice",
                instruction("primer tag=\"80.01\" label=\"" + std::string(label) + "\"") +
                    instruction("primer tag=\"80.01\" label=\"" + std::string(key) + "\""),
                "says it otherwise"},
        Refused{"TextOtherwise", instruction("form text=\"bare\""), "text: expected terminated"},
        Refused{"KeyOfAnotherClass",
                instruction("key class=\"" + std::string(key) + "\" key=\"" + label + "\""),
                "expected that of the class in another version or coding"}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(SupplementText, isRefusedWithoutItsFormatOrInAnother) {
    EXPECT_THROW(parsed(instruction("form text=\"terminated\"")), Exceptions::InvalidFormat);
    EXPECT_THROW(parsed(instruction("format=\"2\"")), Exceptions::InvalidFormat);
}

// --- what edits do ------------------------------------------------------------------------------

/// A document with a Preface (1) and a thing (2), read with the dictionary of things.
class EditedDocument : public ::testing::Test {
protected:
    /// @param elements  of the thing.
    void read(const std::string& instructions, const std::string& elements) {
        const std::string text =
            (instructions.empty() ? "" : first + instructions) +
            "<s377m:MetadataSets xmlns:s377m=\"urn:SMPTE:S377M\" xmlns:rp210=\"urn:SMPTE:RP210\" "
            "xmlns:t=\"urn:test\" xmlns:e=\"urn:test:elements\" "
            "xmlns:groups=\"urn:SMPTE:Groups:MXF\"><s377m:Preface "
            "rp210:InstanceUID=\"" +
            uuidText(1) + "\"/><t:Thing rp210:InstanceUID=\"" + uuidText(2) + "\">" + elements +
            "</t:Thing></s377m:MetadataSets>";
        document_ =
            Tool::readLeniently(reinterpret_cast<const unsigned char*>(text.data()), text.size(),
                                dictionary_, Editing::DocumentIdentifiers::written);
    }

    std::string bytesOfThing(const char* tag) {
        for (const auto* set : *document_.metadata) {
            if (set->instanceUID() == uuid(2)) {
                for (const auto& [name, element] : set->made()) {
                    const auto* definition = element->definition();
                    if (!element->isSkipped() &&
                        Platform::toUtf8(definition->attribute("XMLTagName")) == tag) {
                        return Editing::bytesOf(*element);
                    }
                }
            }
        }
        return "none";
    }

    /// The items of the arrays of bytes that have this name, as a document lists them.
    std::vector<std::string> itemsInThing(const char* tag) {
        std::vector<std::string> items;
        for (const auto* set : *document_.metadata) {
            if (set->instanceUID() == uuid(2)) {
                Editing::forEachElement(*set, [&](const Metadata::Element& element) {
                    if (element.definition() == findThing(tag)) {
                        constexpr std::size_t collectionHead = 8;
                        items.push_back(Editing::bytesOf(element).substr(collectionHead));
                    }
                });
            }
        }
        return items;
    }

    std::string saying(const std::string& kind, const char* tag, const std::string& rest) {
        const auto definition = findThing(tag);
        return instruction(kind + " set=\"" + uuidText(2) + "\" property=\"" +
                           Platform::toUtf8(definition->label().toString()) + "\" " + rest);
    }

    const MetaMetadata::MetaElement* findThing(const char* tag) const {
        for (auto each = dictionary_->metaElementBegin(); each != dictionary_->metaElementEnd();
             ++each) {
            if (Platform::toUtf8((*each)->attribute("XMLTagName")) == tag) {
                return *each;
            }
        }
        throw std::invalid_argument(tag);
    }

    Templates::SharedPtr<MetaMetadata::Dictionary> dictionary_ =
        Model::extendedBy(thingsDictionary()).partition.partitionDictionary().dictionary();
    Editing::DocumentMetadata document_;

    static std::string text(const std::string& tag, const std::string& content) {
        return "<e:" + tag + ">" + content + "</e:" + tag + ">";
    }
};

TEST_F(EditedDocument, keepsBytesAsLongAsItHoldsWhatTheyLookLike) {
    const std::string bytes = saying("bytes", "ISO7String", "hex=\"410042\"");
    read(bytes, text("ISO7String", "A"));
    EXPECT_EQ(bytesOfThing("ISO7String"), std::string("A\0B", 3));
    EXPECT_EQ(document_.supplement.overruled, 0U);
    read(bytes, text("ISO7String", "C"));
    EXPECT_EQ(bytesOfThing("ISO7String"), "C");
    EXPECT_EQ(document_.supplement.overruled, 1U);
    EXPECT_THAT(document_.supplement.firstOverruled,
                ElementsAre(HasSubstr("set Thing " + uuidText(2))));
    read(bytes, "");
    EXPECT_EQ(bytesOfThing("ISO7String"), "none");
    EXPECT_EQ(document_.supplement.overruled, 1U);
}

TEST_F(EditedDocument, keepsAnEmptyValueAsLongAsItHasTheElement) {
    const std::string bytes = saying("bytes", "UTF16String", "hex=\"\"");
    for (const char* content : {"", " ", "\n    "}) {
        read(bytes, text("UTF16String", content));
        EXPECT_EQ(bytesOfThing("UTF16String"), "") << content;
    }
    read(bytes, "");
    EXPECT_EQ(bytesOfThing("UTF16String"), "none");
    read("", text("UTF16String", ""));
    EXPECT_EQ(bytesOfThing("UTF16String"), "none");
}

TEST_F(EditedDocument, keepsBlankTextThatAnEditorHasLaidOutAnew) {
    read(saying("bytes", "ISO7String", "hex=\"2009\""), text("ISO7String", "\n  "));
    EXPECT_EQ(bytesOfThing("ISO7String"), " \t");
}

TEST_F(EditedDocument, leavesNoEmptyValueWhereATextWasEmptied) {
    read(saying("form", "ISO7String", "octets=\"4\""), text("ISO7String", ""));
    EXPECT_EQ(bytesOfThing("ISO7String"), "none");
}

TEST_F(EditedDocument, keepsTheFormOfEditedValues) {
    const std::string form = saying("form", "ISO7String", "octets=\"4\"");
    read(form, text("ISO7String", "ab"));
    EXPECT_EQ(bytesOfThing("ISO7String"), std::string("ab\0\0", 4));
    read(form, text("ISO7String", "abcdef"));
    EXPECT_EQ(bytesOfThing("ISO7String"), "abcdef");
    read(saying("form", "ISO7String", "octets=\"2000\""), text("ISO7String", "ab"));
    EXPECT_EQ(bytesOfThing("ISO7String"), "ab")
        << "filled up with more than an instruction may ask for";
}

TEST_F(EditedDocument, terminatesAllTextsWhereMostWere) {
    const std::string all = instruction("form text=\"terminated\"");
    read(all + saying("form", "UTF16String", "octets=\"2\""),
         text("ISO7String", "ab") + text("UTF16String", "a"));
    EXPECT_EQ(bytesOfThing("ISO7String"), std::string("ab\0", 3));
    EXPECT_EQ(bytesOfThing("UTF16String"), std::string("\0a", 2));
}

TEST_F(EditedDocument, fillsUpItemsOfUnequalLength) {
    const auto items = [&](const char* one, const char* other) {
        return text("ISO7StringArray", text("Element", one) + text("Element", other));
    };
    const std::string form = saying("form", "ISO7StringArray", "item=\"3\"");
    read(form, items("a", "bc"));
    EXPECT_EQ(bytesOfThing("ISO7StringArray"), std::string("\0\0\0\2\0\0\0\3a\0\0bc\0", 14));
    read(form, items("a", "bcde"));
    EXPECT_EQ(bytesOfThing("ISO7StringArray"), std::string("\0\0\0\2\0\0\0\4a\0\0\0bcde", 16));
    EXPECT_THROW(read("", items("a", "bc")), Exceptions::BaseException);
}

TEST_F(EditedDocument, passesOverInstructionsAboutSetsThatAreGone) {
    read(instruction("bytes set=\"" + uuidText(9) + "\" property=\"" + label + "\" hex=\"\""), "");
    EXPECT_EQ(document_.supplement.missingSets, 1U);
    read(instruction("copies set=\"" + uuidText(9) + "\" count=\"2\""), "");
    EXPECT_EQ(document_.supplement.missingSets, 1U);
    read(instruction("unidentified class=\"" + std::string(key) + "\" count=\"3\""), "");
    EXPECT_EQ(document_.supplement.missingSets, 3U);
}

TEST_F(EditedDocument, repeatsBytesInNoMoreSetsThanADocumentHasOfOne) {
    const std::string other =
        "</t:Thing><t:Thing rp210:InstanceUID=\"" + uuidText(2) + "\">" + text("ISO7String", "A");
    read(saying("bytes", "ISO7String", "hex=\"410042\""),
         text("ISO7String", "A") + text("UInt8", "1") + other + text("UInt8", "2") + other);
    std::vector<std::size_t> sizes;
    for (const auto* set : *document_.metadata) {
        for (const auto& [name, element] : set->made()) {
            if (!element->isSkipped() && name == findThing("ISO7String")->label()) {
                sizes.push_back(element->serializedSize());
            }
        }
    }
    EXPECT_THAT(sizes, ElementsAre(3U, 3U, 1U));
}

TEST_F(EditedDocument, passesOverInstructionsAboutCopiesThatAreGone) {
    read(saying("bytes", "ISO7String", "copy=\"1\" hex=\"\""), text("ISO7String", "a"));
    EXPECT_EQ(bytesOfThing("ISO7String"), "a");
    EXPECT_EQ(document_.supplement.missingSets, 1U);
}

TEST_F(EditedDocument, putsAnEmptyArrayWhereItWasAmongOthersOfItsName) {
    const auto items = [](const char* bytes) { return text("UInt8Array", text("Element", bytes)); };
    const std::string empty = "hex=\"0000000000000001\"";
    const auto extensions = [](const std::string& elements) {
        return "<groups:ExtensionElements>" + elements + "</groups:ExtensionElements>";
    };
    const std::string middle = saying("bytes", "UInt8Array", "nth=\"1\" " + empty);
    read(middle, items("65") + extensions(items("66") + items("67")));
    EXPECT_THAT(itemsInThing("UInt8Array"), ElementsAre("A", "", "B", "C"));
    EXPECT_EQ(document_.supplement.overruled, 0U);
    // Where the first of them is gone, its place stays empty.
    read(middle, extensions(items("66")));
    EXPECT_EQ(bytesOfThing("UInt8Array"), "none");
    EXPECT_THAT(itemsInThing("UInt8Array"), ElementsAre("B", ""));
}

TEST_F(EditedDocument, writesAPropertyWithTheVersionOfItsLabelThatAnInstructionSays) {
    auto inFile = findThing("UInt8")->label();
    inFile[7] = 0x7F;
    read(instruction("primer tag=\"80.01\" label=\"" + Platform::toUtf8(inFile.toString()) + "\""),
         text("UInt8", "65"));
    const auto bytes = headerPartitionOf(*document_.metadata);
    mxf::NoWarnings warnings;
    mxf::File file(Templates::auto_ptr<DataIO::RandomAccessSource>(
                       new DataIO::MemorySource(bytes.data(), bytes.size(), "the file written")),
                   dictionary_, warnings);
    const auto again = file.readMetadata().metadata;
    const auto* const written = again->partitionDictionary().find(Types::LocalTag(0x8001), false);
    ASSERT_NE(written, nullptr);
    EXPECT_EQ(*written, inFile);
    const auto differences = differencesOf(*document_.metadata, *again);
    EXPECT_THAT(differences, IsEmpty()) << linesOf(differences);
}

TEST_F(EditedDocument, leavesNoEmptyValueWhereOnlyAnotherCopyHasOne) {
    read(saying("bytes", "ISO7String", "copy=\"1\" hex=\"\""), text("ISO7String", ""));
    EXPECT_EQ(bytesOfThing("ISO7String"), "none");
}

TEST_F(EditedDocument, refusesItemsThatWouldWeighMuchMoreThanTheyDo) {
    std::string items = text("Element", std::string(1000, 'x'));
    for (int i = 0; i != 100; ++i) {
        items += text("Element", "");
    }
    EXPECT_THROW(
        read(saying("bytes", "ISO7StringArray", "hex=\"\""), text("ISO7StringArray", items)),
        Exceptions::LimitExceeded);
}

} // namespace
