#include "XMLBuilder/format/DictionaryNames.h"

#include "XMLBuilder/format/DefinitionName.h"
#include "host/xmlutils/XmlText.h"
#include "tests/support/Model.h"

#include <gtest/gtest.h>

#include <vector>

namespace Corvid::Testing {
namespace {

using XMLBuilder::nameOf;
using XMLBuilder::namesOf;
using XMLBuilder::PropertyName;

constexpr const char* text =
    "namespace s377m urn:SMPTE:S377M\n"
    "namespace a urn:a\n"
    "namespace b urn:b\n"
    "set a:Box 06.0e.2b.34.02.53.01.01.0e.7f.01.01.00.00.00.00 s377m:InterchangeObject concrete\n"
    "property a:Last  06.0e.2b.34.01.01.01.01.0e.7f.01.01.01.00.00.00 - UInt8 optional 900003\n"
    "property b:First 06.0e.2b.34.01.01.01.01.0e.7f.01.01.02.00.00.00 - UInt8 optional 900001\n"
    "property b:Last  06.0e.2b.34.01.01.01.01.0e.7f.01.01.03.00.00.00 - UInt8 optional 900002\n"
    "property a:None  06.0e.2b.34.01.01.01.01.0e.7f.01.01.04.00.00.00 - UInt8 optional -\n";

class NamesOfADictionary : public testing::Test {
protected:
    NamesOfADictionary() : model_(Model::extendedBy(text)) {}

    const XMLBuilder::DictionaryNames& names() { return namesOf(model_.dictionary()); }
    const PropertyName& property(std::u16string_view uri, std::u16string_view local) {
        return nameOf(*names().findProperty(uri, local));
    }

    Model model_;
};

TEST_F(NamesOfADictionary, areMadeOnce) {
    EXPECT_EQ(&names(), &names());
    const auto& box = nameOf(*names().findSet(u"Box"));
    EXPECT_EQ(&box, &nameOf(*names().findSet(u"urn:a", u"Box")));
    EXPECT_EQ(&box.properties(), &box.properties());
    EXPECT_EQ(&property(u"urn:b", u"First"), &property(u"urn:b", u"First"));
}

TEST_F(NamesOfADictionary, findEachClassByBothOfItsNames) {
    for (auto i = model_.dictionary().metaMetadataSetBegin();
         i != model_.dictionary().metaMetadataSetEnd(); ++i) {
        const auto& name = nameOf(**i);
        EXPECT_EQ(names().findSet(name.local.text), *i);
        EXPECT_EQ(names().findSet(name.names.uri, name.local.text), *i);
    }
}

TEST_F(NamesOfADictionary, findEachPropertyInItsNamespace) {
    for (auto i = model_.dictionary().metaElementBegin(); i != model_.dictionary().metaElementEnd();
         ++i) {
        const auto& name = nameOf(**i);
        EXPECT_EQ(names().findProperty(name.names.uri, name.local.text), *i);
    }
    EXPECT_NE(names().findProperty(u"urn:a", u"Last"), names().findProperty(u"urn:b", u"Last"));
}

TEST_F(NamesOfADictionary, findNothingUnderAnotherName) {
    EXPECT_EQ(names().findSet(u"box"), nullptr);
    EXPECT_EQ(names().findSet(u"urn:b", u"Box"), nullptr);
    EXPECT_EQ(names().findSet(u"", u"Box"), nullptr);
    EXPECT_EQ(names().findProperty(u"urn:a", u"First"), nullptr);
    EXPECT_EQ(names().findProperty(u"urn:a:", u"Last"), nullptr);
    EXPECT_EQ(names().findProperty(u"", u""), nullptr);
}

TEST_F(NamesOfADictionary, knowWhichNamespacesHaveClasses) {
    EXPECT_TRUE(names().hasSetsIn(u"urn:a"));
    EXPECT_TRUE(names().hasSetsIn(u"urn:SMPTE:S377M"));
    EXPECT_FALSE(names().hasSetsIn(u"urn:b"));
    EXPECT_FALSE(names().hasSetsIn(u""));
}

TEST_F(NamesOfADictionary, giveAllThatADocumentWrites) {
    const auto& box = nameOf(*names().findSet(u"Box"));
    EXPECT_EQ(box.names.uri, std::u16string(u"urn:a"));
    EXPECT_EQ(box.names.prefix, std::u16string(u"a"));
    EXPECT_EQ(box.qualified, u"a:Box");
    EXPECT_EQ(box.link, u"a:Box_REF");
    const PropertyName& last = property(u"urn:b", u"Last");
    EXPECT_EQ(last.qualified, u"b:Last");
    EXPECT_EQ(last.item, u"b:Element");
    EXPECT_EQ(last.order, 900002U);
    EXPECT_EQ(last.local.hash, XMLBuilder::HashedName(u"Last").hash);
}

/// Those that the test defines, in their order.
std::u16string ownNames(const std::vector<const PropertyName*>& properties) {
    std::u16string names;
    for (const PropertyName* each : properties) {
        if (each->qualified.front() != u'r') {
            names += each->qualified + u" ";
        }
    }
    return names;
}

TEST_F(NamesOfADictionary, listThePropertiesOfAClassInDocumentOrderAndByLabel) {
    const auto& properties = nameOf(*names().findSet(u"Box")).properties();
    EXPECT_EQ(ownNames(properties.inDocuments), u"b:First b:Last a:Last a:None ");
    EXPECT_EQ(ownNames(properties.byLabel), u"a:Last b:First b:Last a:None ");
    EXPECT_EQ(properties.inDocuments.front()->qualified, u"rp210:InstanceUID");
    EXPECT_EQ(properties.byLabel.size(), properties.inDocuments.size());
}

struct AttributeCase {
    const char* name;
    const char16_t* prefix;
    const char16_t* local;
    bool isWrittenAsAttribute;
    PropertyName::Place place;
    std::u16string attribute;
};

void PrintTo(const AttributeCase& c, std::ostream* to) { *to << c.name; }
std::string nameOfCase(const testing::TestParamInfo<AttributeCase>& info) {
    return info.param.name;
}

class AttributesOfSets : public testing::TestWithParam<AttributeCase> {};

TEST_P(AttributesOfSets, areWrittenByQualifiedAndReadByLocalName) {
    const MetaMetadata::MetaElement definition(
        {XMLUtils::fromXml(GetParam().local), XMLUtils::fromXml(u"urn:a"),
         XMLUtils::fromXml(GetParam().prefix), nullptr},
        Types::UniversalLabel(), 0, Types::Identifiers::UUID);
    const PropertyName& name = nameOf(definition);
    EXPECT_EQ(name.isWrittenAsAttribute, GetParam().isWrittenAsAttribute);
    EXPECT_EQ(name.place, GetParam().place);
    EXPECT_EQ(name.attribute == nullptr ? u"" : name.attribute, GetParam().attribute);
    EXPECT_FALSE(name.order.has_value());
}

INSTANTIATE_TEST_SUITE_P(
    , AttributesOfSets,
    testing::Values(AttributeCase{"InstanceUID", u"rp210", u"InstanceUID", true,
                                  PropertyName::Place::instanceAttribute, u"rp210:InstanceUID"},
                    AttributeCase{"GenerationUID", u"rp210", u"GenerationUID", true,
                                  PropertyName::Place::otherAttribute, u"rp210:GenerationUID"},
                    AttributeCase{"AnotherInstanceUID", u"a", u"InstanceUID", false,
                                  PropertyName::Place::instanceAttribute, u"rp210:InstanceUID"},
                    AttributeCase{"Other", u"rp210", u"InstanceUIDs", false,
                                  PropertyName::Place::child, u""}),
    nameOfCase);

} // namespace
} // namespace Corvid::Testing
