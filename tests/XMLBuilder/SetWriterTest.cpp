#include "host/base/Exceptions.h"
#include "tests/XMLBuilder/XmlOf.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Corvid::Testing {
namespace {

using namespace Corvid::Types;
using testing::HasSubstr;
using testing::Not;

constexpr const char* twoPrefixes = R"(
namespace s377m urn:SMPTE:S377M
namespace one urn:test:one
namespace numbers urn:test:numbers
set one:Basket 06.0e.2b.34.02.53.01.01.0e.7f.01.00.00.00.00.00 s377m:InterchangeObject concrete
property numbers:Late 06.0e.2b.34.01.01.01.01.0e.7f.01.01.00.00.00.00 - UInt8 optional -
property numbers:Later 06.0e.2b.34.01.01.01.01.0e.7f.01.00.00.00.00.00 - UInt8 optional -
)";

std::string elementOf(const std::string& xml, const std::string& tag) {
    const std::size_t begin = xml.find("<" + tag + " ");
    const std::size_t end = xml.find("</" + tag + ">", begin);
    return xml.substr(begin, end == std::string::npos ? xml.find("/>", begin) + 2 - begin
                                                      : end + tag.size() + 3 - begin);
}

TEST(SetWriter, writesASetReachedTwiceAtTheFirstPlaceOnly) {
    Model model;
    auto& preface = model.set("Preface", 1);
    model.references(preface, "IdentificationList", {2, 2});
    model.set("Identification", 2);
    const std::string text = compactXmlOf(model);
    EXPECT_EQ(text.find("<s377m:Identification "), text.rfind("<s377m:Identification "));
    EXPECT_NE(text.find("<s377m:Identification_REF "), text.rfind("<s377m:Identification_REF "));
}

TEST(SetWriter, writesACycleOnce) {
    Model model;
    auto& preface = model.set("Preface", 1);
    model.reference(preface, "ContentStorageObject", 2);
    auto& storage = model.set("ContentStorage", 2);
    model.references(storage, "Packages", {1});
    const std::string text = compactXmlOf(model);
    EXPECT_EQ(text.find("<s377m:Preface "), text.rfind("<s377m:Preface "));
    EXPECT_THAT(text, HasSubstr("<rp210:Packages><s377m:Preface_REF"));
}

TEST(SetWriter, ordersPropertiesByTheirSchemaIndexNotByTheirLabel) {
    Model model = Model::extendedBy(twoPrefixes);
    auto& preface = model.set("Preface", 1);
    model.reference(preface, "ContentStorageObject", 2);
    auto& basket = model.set("Basket", 2);
    model.value(basket, "Later", UInt8(2));
    model.value(basket, "Late", UInt8(1));
    EXPECT_THAT(elementOf(compactXmlOf(model), "one:Basket"),
                HasSubstr("<numbers:Late>1</numbers:Late><numbers:Later>2</numbers:Later>"));
}

TEST(SetWriter, writesInvalidElementsFirstInStoredOrder) {
    Model model;
    auto& preface = model.set("Preface", 1);
    model.value(preface, "FormatVersion", VersionType(1, 3));
    model.unknown(preface, 0x4002, "b");
    model.unknown(preface, 0x4001, "a");
    EXPECT_THAT(
        compactXmlOf(model),
        HasSubstr("><groups:ExtensionElements>"
                  "<groups:DarkElement groups:StaticLocalTag=\"40.02\">62</groups:DarkElement>"
                  "<groups:DarkElement groups:StaticLocalTag=\"40.01\">61</groups:DarkElement>"
                  "</groups:ExtensionElements><rp210:FormatVersion>259</rp210:FormatVersion>"));
}

TEST(SetWriter, leavesASetWithoutPropertiesEmpty) {
    Model model;
    auto& preface = model.set("Preface", 1);
    model.reference(preface, "ContentStorageObject", 2);
    model.set("ContentStorage", 2);
    EXPECT_EQ(elementOf(compactXmlOf(model), "s377m:ContentStorage"),
              "<s377m:ContentStorage rp210:InstanceUID=\"" + uuidText(2) + "\"/>");
}

TEST(SetWriter, leavesOutElementsOfTheClassThatHaveNoSchemaIndex) {
    Model model;
    auto& preface = model.set("Preface", 1);
    // A property that is listed among those of the class but is none of them.
    auto attribute = Metadata::Element::Attribute(new MetaMetadata::UnknownAttribute(
        LocalTag(0x4001), MetaMetadata::UnknownAttribute::unknownLabel));
    preface.createElement(UniversalLabel(std::array<u8, 16>{1}), attribute)
        .parse(Model::view("lost on purpose"));
    EXPECT_THAT(compactXmlOf(model), Not(HasSubstr("DarkElement")));
}

TEST(SetWriter, movesTheContainerOfADarkGroupToTheEnd) {
    Model model;
    auto& preface = model.set("Preface", 1);
    model.references(preface, "IdentificationList", {2, 3});
    model.darkGroup(2);
    model.set("Identification", 3);
    const std::string text = compactXmlOf(model);
    EXPECT_GT(text.find("<groups:FloatingDarkMetadata"), text.find("<s377m:Identification "));
    EXPECT_THAT(text, HasSubstr("</groups:FloatingDarkMetadata></s377m:MetadataSets>"));
}

TEST(SetWriter, refusesSetsAsValuesThatNestTooDeep) {
    Model model;
    auto& preface = model.set("Preface", 1);
    model.reference(preface, "ContentStorageObject", 2);
    for (u8 i = 2; i != 255; ++i) {
        model.reference(model.set("EssenceGroup", i), "StillFrame", static_cast<u8>(i + 1));
    }
    auto& last = model.set("EssenceGroup", 255);
    EXPECT_THAT(compactXmlOf(model, {true, false}), HasSubstr(uuidText(255)));
    model.reference(last, "StillFrame", 0);
    auto& beyond = model.set("EssenceGroup", 0);
    model.reference(beyond, "StillFrame", 1);
    EXPECT_THAT(compactXmlOf(model, {true, false}), HasSubstr(uuidText(0)));

    std::array<u8, 16> other{1};
    static_cast<Metadata::SimpleElement*>(
        model.set("EssenceGroup", 99)
            .find(Metadata::Structural::StructuralMetadataULs::instanceUID()))
        ->set(UUID(other).clone());
    static_cast<Metadata::ReferenceElement*>(
        beyond.find(UniversalLabel(
            Platform::fromUtf8("06.0e.2b.34.01.01.01.02.06.01.01.04.02.08.00.00").c_str(),
            dottedHexadecimal)))
        ->setUnverifiedReference(Templates::auto_ptr<Reference>(new StrongReference(UUID(other))));
    EXPECT_THROW(compactXmlOf(model, {true, false}), Exceptions::LimitExceeded);
    EXPECT_THAT(compactXmlOf(model), HasSubstr(uuidText(255))); // as links there is no limit
}

} // namespace
} // namespace Corvid::Testing
