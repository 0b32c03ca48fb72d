#include "tests/XMLBuilder/XmlOf.h"
#include "tests/support/Golden.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Corvid::Testing {
namespace {

using namespace Corvid::Types;
using testing::HasSubstr;
using testing::Not;

const std::array<unsigned char, 16> privateKey{0x80, 1, 2,  3,  4,  5,  6,  7,
                                               8,    9, 10, 11, 12, 13, 14, 15};

std::size_t count(const std::string& text, const std::string& part) {
    std::size_t found = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++found;
    }
    return found;
}

/// The names and identifiers of the elements under the root and under the floating container, in
/// document order, as "Track 3".
std::string outlineOf(Model& model, Flags flags = {}) {
    const auto document = XMLBuilder::partition2XML(&model.partition, flags.referencesAsValues,
                                                    flags.skipNonStructural);
    std::string outline;
    const auto list = [&outline](xercesc::DOMElement* parent, auto&& self) -> void {
        for (auto* child = parent->getFirstElementChild(); child;
             child = child->getNextElementSibling()) {
            const std::string name = Platform::toUtf8(XMLUtils::fromXml(child->getNodeName()));
            const std::string id =
                Platform::toUtf8(XMLUtils::fromXml(child->getAttribute(u"rp210:InstanceUID")));
            outline += (outline.empty() ? "" : ", ") + name.substr(name.find(':') + 1);
            outline += id.empty() ? "" : " " + id.substr(id.size() - 2);
            if (name == "groups:FloatingDarkMetadata") {
                outline += " [";
                self(child, self);
                outline += "]";
            }
        }
    };
    list(dynamic_cast<xercesc::DOMDocument&>(*document).getDocumentElement(), list);
    return outline;
}

TEST(Document, ofATreeAloneHasNoFloatingContainer) {
    Model model;
    model.set("Preface", 1);
    const std::string text = compactXmlOf(model);
    EXPECT_THAT(text, HasSubstr("<s377m:MetadataSets"));
    EXPECT_THAT(text, Not(HasSubstr("FloatingDarkMetadata")));
    EXPECT_EQ(outlineOf(model), "Preface 01");
}

TEST(Document, standsFlatInDepthFirstOrder) {
    Model model;
    auto& preface = model.set("Preface", 1);
    model.references(preface, "IdentificationList", {2});
    model.reference(preface, "ContentStorageObject", 3);
    auto& storage = model.set("ContentStorage", 3);
    model.references(storage, "Packages", {4, 5});
    auto& material = model.set("MaterialPackage", 4);
    model.references(material, "PackageTracks", {6});
    auto& track = model.set("TimelineTrack", 6);
    model.reference(track, "TrackSegment", 7);
    model.set("Sequence", 7);
    model.set("SourcePackage", 5);
    model.set("Identification", 2);
    EXPECT_EQ(outlineOf(model),
              "Preface 01, ContentStorage 03, MaterialPackage 04, "
              "TimelineTrack 06, Sequence 07, SourcePackage 05, Identification 02");
}

TEST(Document, hasOnlyDarkSetsInItsContainerWhereTheTreeReachesAllOthers) {
    Model model;
    model.set("Preface", 1);
    model.darkSet(privateKey, 4, std::string_view("\x01\xAB", 2));
    const std::string text = compactXmlOf(model);
    EXPECT_THAT(text, HasSubstr("<groups:FloatingDarkMetadata><groups:DarkMetadata"));
    EXPECT_THAT(text, HasSubstr("xmlns:groups=\"urn:SMPTE:Groups:MXF\""));
    EXPECT_EQ(outlineOf(model), "Preface 01, FloatingDarkMetadata [, DarkMetadata]");
}

TEST(Document, putsFloatingSetsBehindDarkSetsEachFollowedByWhatItOwns) {
    Model model;
    model.set("Sequence", 9);
    auto& track = model.set("TimelineTrack", 8);
    model.reference(track, "TrackSegment", 10);
    model.set("Preface", 1);
    model.set("Sequence", 10);
    model.darkSet(privateKey, 4, "x");
    EXPECT_EQ(outlineOf(model), "Preface 01, FloatingDarkMetadata [, DarkMetadata, Sequence 09, "
                                "TimelineTrack 08, Sequence 0a]");
}

TEST(Document, writesASetTwiceThatTheTreeAndAFloatingSetOwn) {
    Model model;
    auto& preface = model.set("Preface", 1);
    model.reference(preface, "ContentStorageObject", 2);
    model.set("ContentStorage", 2);
    auto& other = model.set("Preface", 3);
    model.reference(other, "ContentStorageObject", 2);
    EXPECT_EQ(
        outlineOf(model),
        "Preface 01, ContentStorage 02, FloatingDarkMetadata [, Preface 03, ContentStorage 02]");
}

TEST(Document, declaresEachNamespaceOnceOnTheRoot) {
    Model model;
    auto& preface = model.set("Preface", 1);
    model.value(preface, "FormatVersion", VersionType(1, 3));
    model.darkSet(privateKey, 4, "x");
    const std::string text = compactXmlOf(model);
    const std::string root = text.substr(0, text.find('>'));
    EXPECT_EQ(root, "<s377m:MetadataSets"
                    " xmlns:groups=\"urn:SMPTE:Groups:MXF\""
                    " xmlns:rp210=\"urn:SMPTE:RP210\""
                    " xmlns:s377m=\"urn:SMPTE:S377M\""
                    " xmlns:s422mTypes=\"urn:SMPTE:S422MTypes:MXF\""
                    " xmlns:types=\"urn:SMPTE:Types:MXF\"");
    EXPECT_EQ(count(text, "xmlns:"), 5U);
}

TEST(Document, writesOnlyTheTreeOfTheFirstPrefaceInPlace) {
    Model model;
    model.set("Preface", 1);
    auto& second = model.set("Preface", 2);
    model.reference(second, "ContentStorageObject", 3);
    model.set("ContentStorage", 3);
    EXPECT_EQ(outlineOf(model),
              "Preface 01, FloatingDarkMetadata [, Preface 02, ContentStorage 03]");
}

TEST(Document, ofAHundredThousandSetsInAChainIsWrittenWithoutNestedCalls) {
    Model model;
    auto& preface = model.set("Preface", 0);
    const auto number = [](unsigned n) {
        std::array<u8, 16> bytes{};
        bytes[0] = 1;
        bytes[13] = static_cast<u8>(n >> 16);
        bytes[14] = static_cast<u8>(n >> 8);
        bytes[15] = static_cast<u8>(n);
        return UUID(bytes);
    };
    constexpr unsigned length = 100000;
    const auto link = [&](Model::Set& set, const char* tag, unsigned target) {
        model.element(set, tag).parse(ByteView{number(target).rawBuffer(), 16});
    };
    link(preface, "ContentStorageObject", 0);
    for (unsigned i = 0; i != length; ++i) {
        auto& segment = model.set("EssenceGroup", 0);
        static_cast<Metadata::SimpleElement*>(
            segment.find(Metadata::Structural::StructuralMetadataULs::instanceUID()))
            ->set(number(i).clone());
        link(segment, "StillFrame", i + 1);
    }
    const auto document = XMLBuilder::partition2XML(&model.partition, false, false);
    auto* root = dynamic_cast<xercesc::DOMDocument&>(*document).getDocumentElement();
    EXPECT_EQ(root->getChildElementCount(), length + 1);
}

TEST(Document, ofASmallFileLooksLikeThis) {
    Model model;
    auto& preface = model.set("Preface", 1);
    model.value(preface, "FormatVersion", VersionType(1, 3));
    model.value(preface, "FileLastModified", Timestamp(2026, 11, 20, 21, 52, 51, 400));
    model.references(preface, "IdentificationList", {2});
    model.references(preface, "EssenceContainers", {});
    auto& identification = model.set("Identification", 2);
    model.value(identification, "GenerationID", uuid(9));
    model.value(identification, "ApplicationSupplierName",
                UTF16String(Platform::fromUtf8("A & B").c_str()));
    model.value(identification, "ApplicationVersion",
                ProductVersion(1, 2, 3, 4, ProductVersion::releasedVersion));
    model.unknown(identification, 0x4567, std::string_view("\x00\xFF", 2));
    model.darkSet(privateKey, 9, std::string_view("\x01\xAB", 2));
    EXPECT_TRUE(matchesGolden(xmlOf(model), "XMLBuilder/small-file.xml"));
}

} // namespace
} // namespace Corvid::Testing
