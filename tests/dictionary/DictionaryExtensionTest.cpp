#include "host/dictionary/Dictionary.h"

#include "host/dictionary/MisplacedAttribute.h"
#include "host/dictionary/UnknownAttribute.h"
#include "tests/dictionary/DictionarySupport.h"

#include <gtest/gtest.h>

namespace Corvid::Testing {

namespace {

using namespace MetaMetadata;

constexpr char shots[] = R"(# A house's own shot list.
namespace  s377m  urn:SMPTE:S377M
namespace  rp210  urn:SMPTE:RP210
namespace  house  http://example.org/house#1   # a URI may hold a number sign

set       house:ShotList     06.0e.2b.34.02.53.01.01.0f.7f.00.00.00.00.01.00  s377m:DescriptiveObject  concrete
property  house:Shots        06.0e.2b.34.01.01.01.01.0f.7f.00.00.00.00.01.01  -      Batch(StrongReference)  encoder-required  -
property  house:Remark       06.0e.2b.34.01.01.01.01.0f.7f.00.00.00.00.01.02  7f.01  UTF16String  optional  -
use       rp210:PackageName  optional
)";

Templates::SharedPtr<Dictionary> extended(std::initializer_list<const char*> contents) {
    OwnedTexts texts;
    int number = 0;
    for (const char* content : contents) {
        texts.add("text" + std::to_string(++number), content);
    }
    return Dictionary::extend(*Dictionary::builtIn(), texts.texts());
}

} // namespace

TEST(DictionaryExtension, addsSetsAndProperties) {
    const auto dictionary = extended({shots});
    const auto* set = dictionary->findSet(key("06.0e.2b.34.02.53.01.09.0f.7f.00.00.00.00.01.00"));
    ASSERT_NE(set, nullptr);
    EXPECT_EQ(nameOf(*set), "house:ShotList");
    EXPECT_EQ(textOf(*set, "XMLNamespaceURI"), "http://example.org/house#1");
    EXPECT_EQ(nameOf(*set->parent()), "s377m:DescriptiveObject");
    EXPECT_TRUE(set->isConcrete());
    const auto properties = propertiesOf(*set);
    ASSERT_EQ(properties.size(), set->parent()->attributes().size() + 3);
    const auto* first = properties[properties.size() - 3];
    EXPECT_EQ(nameOf(first->metaElement()), "house:Shots");
    EXPECT_EQ(first->requiredStatus(), AttributeRequiredStatus::encoderRequired);
    EXPECT_EQ(first->metaElement().dataType(), Types::Identifiers::Batch);
    EXPECT_EQ(dynamic_cast<const MetaCollectionElement&>(first->metaElement()).dataSubType(),
              Types::Identifiers::StrongReference);
    EXPECT_EQ(nameOf(*dictionary->findElementByStaticTag(0x7F01)), "house:Remark");
    EXPECT_EQ(nameOf(properties.back()->metaElement()), "rp210:PackageName");
}

TEST(DictionaryExtension, leavesTheBaseAlone) {
    const auto base = Dictionary::builtIn();
    const auto count = base->metaElementEnd() - base->metaElementBegin();
    const auto dictionary = extended({shots});
    EXPECT_EQ(dictionary->metaElementEnd() - dictionary->metaElementBegin(), count + 2);
    EXPECT_EQ(base->metaElementEnd() - base->metaElementBegin(), count);
    EXPECT_EQ(findSetByTag(*base, "ShotList"), nullptr);
    for (auto i = base->metaElementBegin(); i != base->metaElementEnd(); ++i) {
        const MetaElement* same = dictionary->findElement((*i)->label());
        ASSERT_NE(same, nullptr);
        EXPECT_EQ(nameOf(*same), nameOf(**i));
        EXPECT_EQ(textOf(*same, "SchemaIndex"), textOf(**i, "SchemaIndex"));
    }
}

TEST(DictionaryExtension, propertiesFollowTheLastOfTheBase) {
    const auto base = Dictionary::builtIn();
    unsigned long last = 0;
    for (auto i = base->metaElementBegin(); i != base->metaElementEnd(); ++i) {
        last = std::max(last, schemaIndexOf(**i));
    }
    const auto dictionary = extended({shots});
    const auto* remark = dictionary->findElementByStaticTag(0x7F01);
    EXPECT_EQ(schemaIndexOf(*remark), last + 2);
}

TEST(DictionaryExtension, giveAPropertyToASetOfTheBase) {
    const auto dictionary = extended({R"(
        namespace s377m urn:SMPTE:S377M
        namespace house urn:house
        extend s377m:Preface
        property house:Till 06.0e.2b.34.01.01.01.01.0f.7f.00.00.00.00.02.01 - UInt8 optional -)"});
    const auto till = label("06.0e.2b.34.01.01.01.01.0f.7f.00.00.00.00.02.01");
    EXPECT_NE(findSetByTag(*dictionary, "Preface")->find(till), nullptr);
    EXPECT_EQ(findSetByTag(*Dictionary::builtIn(), "Preface")->find(till), nullptr);
    EXPECT_EQ(findSetByTag(*dictionary, "Identification")->find(till), nullptr);
}

TEST(DictionaryExtension, textsReferToEachOtherInAnyOrder) {
    const char derived[] = "namespace house http://example.org/house#1\n"
                           "set house:Child 06.0e.2b.34.02.53.01.01.0f.7f.00.00.00.00.03.00 "
                           "house:ShotList concrete\n";
    for (const auto& dictionary : {extended({derived, shots}), extended({shots, derived})}) {
        const auto* child = findSetByTag(*dictionary, "Child");
        ASSERT_NE(child, nullptr);
        EXPECT_EQ(nameOf(*child->parent()), "house:ShotList");
    }
}

TEST(DictionaryExtension, canItselfBeExtended) {
    const auto first = extended({shots});
    OwnedTexts more;
    more.add("more", "namespace house http://example.org/house#1\nextend house:ShotList\n"
                     "property house:Mood 06.0e.2b.34.01.01.01.01.0f.7f.00.00.00.00.01.03 - "
                     "UTF16String optional -\n");
    const auto second = Dictionary::extend(*first, more.texts());
    EXPECT_EQ(findSetByTag(*second, "ShotList")->attributes().size(),
              findSetByTag(*first, "ShotList")->attributes().size() + 1);
}

TEST(DictionaryExtension, takesLineEndsOfEveryKind) {
    std::string text = "\xEF\xBB\xBF";
    for (const char c : std::string(shots)) {
        text += c == '\n' ? std::string("\r\n") : std::string(1, c);
    }
    EXPECT_NE(findSetByTag(*extended({text.c_str()}), "ShotList"), nullptr);
}

TEST(DictionaryExtension, ofTheManualLoads) {
    const std::string manual = contentOf(sourceDir() / "docs" / "dictionary.md");
    const std::string fence = "```dictionary\n";
    const std::size_t start = manual.find(fence);
    ASSERT_NE(start, std::string::npos);
    const std::size_t end = manual.find("```", start + fence.size());
    const std::string example = manual.substr(start + fence.size(), end - start - fence.size());
    const auto dictionary = extended({example.c_str()});
    EXPECT_NE(findSetByTag(*dictionary, "ScanReport"), nullptr);
}

TEST(MetaAttributes, tellTheirKind) {
    struct Visitor : AbstractMetaAttributeVisitor {
        std::string kind;
        void visit(const UnknownAttribute& attribute) override {
            kind = "unknown " + dotted(attribute.localTag()) + std::to_string(attribute.reason());
        }
        void visit(const MisplacedAttribute& attribute) override {
            kind = "misplaced " + nameOf(attribute.metaElement());
        }
        void visit(const MetaAttribute& attribute) override {
            kind = "known " + nameOf(attribute.metaElement());
        }
    } visitor;
    const auto dictionary = Dictionary::builtIn();
    const MetaElement& element = *dictionary->findElementByStaticTag(0x4401);
    UnknownAttribute(Types::LocalTag(0x8123), UnknownAttribute::unfitValue).accept(visitor);
    EXPECT_EQ(visitor.kind, "unknown 81.232");
    MisplacedAttribute(element).accept(visitor);
    EXPECT_EQ(visitor.kind, "misplaced rp210:PackageID");
    MetaAttribute(element, AttributeRequiredStatus::required).accept(visitor);
    EXPECT_EQ(visitor.kind, "known rp210:PackageID");
}

TEST(MetaAttributes, giveTheirFactsWithoutAVisitor) {
    using Kind = AttributeFacts::Kind;
    const auto dictionary = Dictionary::builtIn();
    const MetaElement& element = *dictionary->findElementByStaticTag(0x4401);
    const Types::LocalTag tag(0x8123);

    const MetaAttribute required(element, AttributeRequiredStatus::encoderRequired);
    const MetaAttribute optional(element, AttributeRequiredStatus::optional);
    const MisplacedAttribute misplaced(element);
    const UnknownAttribute unknown(tag, UnknownAttribute::unknownLabel);
    const UnknownAttribute withoutLabel(tag, UnknownAttribute::tagWithoutLabel);
    const UnknownAttribute unfit(tag, UnknownAttribute::unfitValue);
    const struct {
        const AbstractMetaAttribute& attribute;
        AttributeFacts facts;
    } cases[] = {
        {required, {Kind::placed, true, &element, 0, false}},
        {optional, {Kind::placed, false, &element, 0, false}},
        {misplaced, {Kind::misplaced, false, &element, 0, false}},
        {unknown, {Kind::unknown, false, nullptr, 0x8123, false}},
        {withoutLabel, {Kind::unknown, false, nullptr, 0x8123, false}},
        {unfit, {Kind::unknown, false, nullptr, 0x8123, true}},
    };
    for (const auto& [attribute, expected] : cases) {
        const AttributeFacts& facts = attribute.facts();
        EXPECT_EQ(facts.kind, expected.kind);
        EXPECT_EQ(facts.isRequired, expected.isRequired);
        EXPECT_EQ(facts.definition, expected.definition);
        EXPECT_EQ(facts.localTag, expected.localTag);
        EXPECT_EQ(facts.isUnfit, expected.isUnfit);
    }
}

} // namespace Corvid::Testing
