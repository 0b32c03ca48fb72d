#include "tests/XMLBuilder/XmlOf.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Corvid::Testing {
namespace {

using namespace Corvid::Types;
using testing::HasSubstr;
using testing::Not;

constexpr const char* things = R"(
namespace s377m urn:SMPTE:S377M
namespace t urn:test
set t:Thing 06.0e.2b.34.02.53.01.01.0e.7f.02.00.00.00.00.00 s377m:InterchangeObject concrete
property t:MustBatch 06.0e.2b.34.01.01.01.01.0e.7f.02.01.00.00.00.00 - Batch(UInt8) required -
property t:EncoderArray 06.0e.2b.34.01.01.01.01.0e.7f.02.02.00.00.00.00 - Array(UInt8) encoder-required -
property t:DecoderArray 06.0e.2b.34.01.01.01.01.0e.7f.02.03.00.00.00.00 - Array(UInt8) decoder-required -
property t:MayArray 06.0e.2b.34.01.01.01.01.0e.7f.02.04.00.00.00.00 - Array(Rational) optional -
property t:MustOwn 06.0e.2b.34.01.01.01.01.0e.7f.02.05.00.00.00.00 - Batch(StrongReference) required -
property t:MayOwn 06.0e.2b.34.01.01.01.01.0e.7f.02.06.00.00.00.00 - Array(StrongReference) optional -
property t:MayName 06.0e.2b.34.01.01.01.01.0e.7f.02.07.00.00.00.00 - Array(WeakReference) optional -
property t:Names 06.0e.2b.34.01.01.01.01.0e.7f.02.08.00.00.00.00 - WeakReference optional -
property t:Owns 06.0e.2b.34.01.01.01.01.0e.7f.02.09.00.00.00.00 - StrongReference optional -
property t:Text 06.0e.2b.34.01.01.01.01.0e.7f.02.0a.00.00.00.00 - UTF16String optional -
property t:Texts 06.0e.2b.34.01.01.01.01.0e.7f.02.0b.00.00.00.00 - Batch(UTF16String) optional -
)";

std::string_view bytes(const char* text, std::size_t size) { return {text, size}; }

class ElementWriter : public testing::Test {
protected:
    ElementWriter() : model_(Model::extendedBy(things)) {
        auto& preface = model_.set("Preface", 1);
        model_.reference(preface, "ContentStorageObject", 2);
        thing_ = &model_.set("Thing", 2);
    }

    /// The inside of the set's element, or the whole of it where there is nothing inside.
    std::string thing(Flags flags = {}) {
        const std::string text = compactXmlOf(model_, flags);
        const std::size_t begin = text.find("<t:Thing ");
        const std::size_t inside = text.find('>', begin) + 1;
        return text[inside - 2] == '/' ? text.substr(begin, inside - begin)
                                       : text.substr(inside, text.find("</t:Thing>") - inside);
    }

    bool parse(const char* tag, std::string_view value) {
        return model_.element(*thing_, tag).parse(Model::view(value));
    }

    Model model_;
    Model::Set* thing_;
};

TEST_F(ElementWriter, makesAttributesOfInstanceUidAndGenerationUid) {
    model_.value(*thing_, "GenerationUID", uuid(7));
    EXPECT_EQ(thing(), "<t:Thing rp210:GenerationUID=\"" + uuidText(7) + "\" rp210:InstanceUID=\"" +
                           uuidText(2) + "\"/>");
}

TEST_F(ElementWriter, leavesAnIdentifierOutWhoseValueIsNone) {
    Model model;
    auto& preface = model.set("Preface", 1);
    model.value(preface, "GenerationUID", Types::UInt8(7));
    model.value(preface, "FormatVersion", Types::VersionType(1, 3));
    const std::string text = compactXmlOf(model);
    EXPECT_EQ(text.find("GenerationUID"), std::string::npos);
    EXPECT_NE(text.find("<rp210:FormatVersion>259</rp210:FormatVersion>"), std::string::npos);
}

TEST_F(ElementWriter, skipsElementsWithoutValue) {
    for (const char* tag : {"Text", "Owns", "MayOwn", "MustOwn", "MustBatch"}) {
        model_.element(*thing_, tag);
    }
    EXPECT_THAT(thing(), testing::StartsWith("<t:Thing "));
}

TEST_F(ElementWriter, writesAnEmptyCollectionOnlyWhereAnEncoderMustWriteIt) {
    const std::string_view empty = bytes("\0\0\0\0\0\0\0\1", 8);
    for (const char* tag :
         {"MustBatch", "EncoderArray", "DecoderArray", "MayArray", "MustOwn", "MayOwn"}) {
        ASSERT_TRUE(parse(tag, empty));
    }
    EXPECT_EQ(thing(), "<t:MustBatch/><t:EncoderArray/><t:MustOwn/>");
}

TEST_F(ElementWriter, givesEachItemAnElementWithThePrefixOfTheCollection) {
    ASSERT_TRUE(parse("MayArray", bytes("\0\0\0\2\0\0\0\x8\0\0\0\1\0\0\0\2\0\0\0\3\0\0\0\4", 24)));
    EXPECT_EQ(thing(), "<t:MayArray>"
                       "<t:Element><types:Numerator>1</types:Numerator><types:Denominator>2</"
                       "types:Denominator></t:Element>"
                       "<t:Element><types:Numerator>3</types:Numerator><types:Denominator>4</"
                       "types:Denominator></t:Element>"
                       "</t:MayArray>");
}

TEST_F(ElementWriter, writesTextsOfACollectionItemByItem) {
    ASSERT_TRUE(parse("Texts", bytes("\0\0\0\2\0\0\0\4\0a\0b\0c\0\0", 16)));
    EXPECT_EQ(thing(), "<t:Texts><t:Element>ab</t:Element><t:Element>c</t:Element></t:Texts>");
}

TEST_F(ElementWriter, linksAStrongReferenceAndWritesItsTargetBeside) {
    model_.reference(*thing_, "Owns", 3);
    model_.set("Thing", 3);
    EXPECT_EQ(thing(),
              "<t:Owns><t:Thing_REF types:TargetInstance=\"" + uuidText(3) + "\"/></t:Owns>");
    EXPECT_THAT(compactXmlOf(model_),
                HasSubstr("</t:Thing><t:Thing rp210:InstanceUID=\"" + uuidText(3)));
}

TEST_F(ElementWriter, linksAWeakReferenceAndLeavesItsTargetWhereItIs) {
    model_.reference(*thing_, "Names", 3);
    model_.set("Thing", 3);
    EXPECT_EQ(thing(),
              "<t:Names><t:Thing_REF types:TargetInstance=\"" + uuidText(3) + "\"/></t:Names>");
    EXPECT_THAT(compactXmlOf(model_), HasSubstr("<groups:FloatingDarkMetadata"));
}

TEST_F(ElementWriter, marksAReferenceToNothingAsDangling) {
    model_.reference(*thing_, "Owns", 0);
    model_.references(*thing_, "MayName", {9});
    const std::string link = "<s377m:Dangling_REF types:TargetInstance=\"";
    EXPECT_EQ(thing(), "<t:MayName>" + link + uuidText(9) + "\"/></t:MayName><t:Owns>" + link +
                           uuidText(0) + "\"/></t:Owns>");
}

TEST_F(ElementWriter, namesAReferenceToSeveralSetsWithoutPrefix) {
    model_.reference(*thing_, "Owns", 3);
    model_.set("Thing", 3);
    model_.set("Filler", 3);
    EXPECT_EQ(thing(),
              "<t:Owns><MULTIPLE_METADATASETS_REF xmlns=\"urn:test\" types:TargetInstance=\"" +
                  uuidText(3) + "\"/></t:Owns>");
    const std::string text = compactXmlOf(model_);
    EXPECT_LT(text.find("<t:Thing rp210:InstanceUID=\"" + uuidText(3)),
              text.find("<groups:FloatingDarkMetadata"));
    EXPECT_GT(text.find("<s377m:Filler "), text.find("<groups:FloatingDarkMetadata"));
}

TEST_F(ElementWriter, writesADarkGroupBehindADanglingLink) {
    model_.reference(*thing_, "Owns", 3);
    model_.darkGroup(3);
    EXPECT_EQ(thing(), "<t:Owns><s377m:Dangling_REF types:TargetInstance=\"" + uuidText(3) +
                           "\"/></t:Owns>");
    EXPECT_THAT(compactXmlOf(model_),
                HasSubstr("<groups:FloatingDarkMetadata><groups:DarkMetadata"));
}

TEST_F(ElementWriter, writesADarkGroupOnceHoweverManyReferencesLeadToIt) {
    model_.references(*thing_, "MayOwn", {3, 3});
    model_.reference(*thing_, "Names", 3);
    model_.darkGroup(3);
    const std::string text = compactXmlOf(model_);
    EXPECT_EQ(text.find("<groups:DarkMetadata"), text.rfind("<groups:DarkMetadata"));
}

TEST_F(ElementWriter, keepsTheOrderOfTheTreeWhenACollectionOwnsTrees) {
    model_.references(*thing_, "MayOwn", {3, 5});
    model_.references(model_.set("Thing", 3), "MustOwn", {4, 5});
    model_.set("Thing", 4);
    model_.set("Thing", 5);
    const std::string text = compactXmlOf(model_);
    const std::string head = "<t:Thing rp210:InstanceUID=\"";
    const std::size_t uidLength = 47;
    std::string order;
    for (std::size_t at = text.find(head); at != std::string::npos; at = text.find(head, at + 1)) {
        order += text.at(at + head.size() + uidLength - 1);
    }
    EXPECT_EQ(order, "2345");
}

TEST_F(ElementWriter, doesNotWriteTargetsThatAreNotStructuralWhenToldSo) {
    model_.reference(*thing_, "Owns", 3);
    model_.set("Thing", 3);
    // The target is reached by a link only; being in the tree of the Preface, it does not float
    // either.
    const std::string text = compactXmlOf(model_, {false, true});
    EXPECT_THAT(text, Not(HasSubstr("<t:Thing ")));
    EXPECT_THAT(text, HasSubstr("<t:Thing_REF "));
}

TEST_F(ElementWriter, leavesOutReferencesToNonStructuralSetsAsValuesWhenToldSo) {
    EXPECT_THAT(compactXmlOf(model_, {true, true}), Not(HasSubstr("ContentStorageObject")));
    EXPECT_THAT(compactXmlOf(model_, {true, false}),
                HasSubstr("<rp210:ContentStorageObject><t:Thing "));
}

TEST_F(ElementWriter, putsAMisplacedElementUnderItsOwnNameAmongTheExtensions) {
    model_.misplaced(*thing_, "FormatVersion").parse(Model::view(bytes("\1\3", 2)));
    EXPECT_EQ(thing(), "<groups:ExtensionElements><rp210:FormatVersion>259</rp210:FormatVersion>"
                       "</groups:ExtensionElements>");
    EXPECT_THAT(compactXmlOf(model_).substr(0, 200), HasSubstr("xmlns:groups="));
}

TEST_F(ElementWriter, putsMisplacedReferencesAndCollectionsAmongTheExtensionsToo) {
    model_.misplaced(*thing_, "ContentStorageObject").parse(ByteView{uuid(9).rawBuffer(), 16});
    model_.misplaced(*thing_, "PackageTracks").parse(Model::view(bytes("\0\0\0\0\0\0\0\x10", 8)));
    model_.misplaced(*thing_, "DescriptiveClipDescribedTrackIDs")
        .parse(Model::view(bytes("\0\0\0\1\0\0\0\4\0\0\0\7", 12)));
    EXPECT_EQ(thing(),
              "<groups:ExtensionElements><rp210:ContentStorageObject><s377m:Dangling_REF"
              " types:TargetInstance=\"" +
                  uuidText(9) +
                  "\"/></rp210:ContentStorageObject>"
                  "<rp210:DescriptiveClipDescribedTrackIDs><rp210:Element>7</rp210:Element>"
                  "</rp210:DescriptiveClipDescribedTrackIDs></groups:ExtensionElements>");
}

TEST_F(ElementWriter, namesAnUnknownElementByItsStaticTagOrByTheLabelOfItsDynamicOne) {
    const UniversalLabel label(std::array<u8, 16>{6, 14, 43, 52, 1, 1, 1, 1, 14, 0xAB});
    model_.partition.partitionDictionary().add(LocalTag(0x8001), label);
    model_.unknown(*thing_, 0x4567, "A");
    model_.unknown(*thing_, 0x8001, "B");
    model_.unknown(*thing_, 0x8002, ""); // the primer lacks it
    EXPECT_EQ(thing(), "<groups:ExtensionElements>"
                       "<groups:DarkElement groups:StaticLocalTag=\"45.67\">41</groups:DarkElement>"
                       "<groups:DarkElement "
                       "groups:UniversalLabel=\"06.0e.2b.34.01.01.01.01.0e.ab.00.00.00.00.00.00\">"
                       "42</groups:DarkElement>"
                       "<groups:DarkElement groups:StaticLocalTag=\"80.02\"></groups:DarkElement>"
                       "</groups:ExtensionElements>");
}

TEST_F(ElementWriter, leavesOneEmptyTextNodeInAnEmptyText) {
    ASSERT_TRUE(parse("Text", ""));
    EXPECT_EQ(thing(), "<t:Text></t:Text>");
}

} // namespace
} // namespace Corvid::Testing
