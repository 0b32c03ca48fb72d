#include "XMLBuilder/XML2Partition.h"
#include "XMLBuilder/XMLBuilder.h"
#include "host/xmlutils/CleanDocument.h"
#include "host/xmlutils/Initializer.h"
#include "host/xmlutils/LoadDocument.h"
#include "host/xmlutils/Serialise.h"
#include "tests/support/ExportedNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

namespace Corvid::Testing {
namespace {

TEST(Exports, areTheInterfaceAndNothingElse) {
    const std::string writer = "Corvid::XMLBuilder::";
    const std::string reader = "Corvid::XML2Partition::getPartitionMetadataFrom";
    std::vector<std::string> expected{
        writer + "getNamespaceURI", writer + "getPrefix",     writer + "partition2XML",
        writer + "partition2XML",   writer + "partition2XML", writer + "partition2XML",
        reader + "Buffer",          reader + "String",        reader + "File"};
    for (const char* caught : {"InvalidFormat", "ParseError"}) {
        for (const char* part : {"typeinfo for ", "typeinfo name for ", "vtable for "}) {
            expected.push_back(std::string(part) + "Corvid::Exceptions::" + caught);
        }
    }
    EXPECT_THAT(exportedNames(CORVID_TEST_XMLBUILDER_LIBRARY),
                testing::UnorderedElementsAreArray(expected));
}

using Wide = Templates::basic_string<unsigned short, Templates::char_traits<unsigned short>,
                                     Platform::malloc_alloc>;
using Document = Templates::auto_ptr<xercesc::DOMNode>;
using Sets = Templates::list<Metadata::MetadataSet*, Platform::malloc_alloc>;
using Partition = Metadata::PartitionMetadata;
using Set = Metadata::MetadataSet;
using XMLUtils::EncodingType;
using XMLUtils::UnicodeString;

/// A call of that type finds the function, overloaded or not, only where the types are the same.
template <class Function> bool is(Function* function) { return function != nullptr; }

TEST(Exports, haveTheTypesThatApplicationsAreBuiltFor) {
    EXPECT_TRUE(is<const UnicodeString&()>(&XMLBuilder::getNamespaceURI));
    EXPECT_TRUE(is<const UnicodeString&()>(&XMLBuilder::getPrefix));
    EXPECT_TRUE((is<Document(Partition*, bool, bool)>(&XMLBuilder::partition2XML)));
    EXPECT_TRUE((is<Document(Partition*, const Set*, bool, bool)>(&XMLBuilder::partition2XML)));
    EXPECT_TRUE(
        (is<void(Partition*, bool, bool, EncodingType, Wide&)>(&XMLBuilder::partition2XML)));
    EXPECT_TRUE((is<void(Partition*, const Set*, bool, bool, EncodingType, Wide&)>(
        &XMLBuilder::partition2XML)));
    using namespace XML2Partition;
    EXPECT_TRUE((
        is<Sets(const unsigned char*, unsigned int, Partition*)>(&getPartitionMetadataFromBuffer)));
    EXPECT_TRUE((is<Sets(const Wide&, Partition*)>(&getPartitionMetadataFromString)));
    EXPECT_TRUE((is<Sets(const unsigned short*, Partition*)>(&getPartitionMetadataFromFile)));
}

TEST(Exports, ofTheXmlUtilitiesHaveTheTypesThatApplicationsAreBuiltFor) {
    using namespace XMLUtils;
    using xercesc::DOMDocument;
    using xercesc::DOMLSParser;
    EXPECT_TRUE((is<void(const xercesc::DOMNode*, Wide&, EncodingType)>(&domToBuffer)));
    EXPECT_TRUE((is<DOMDocument*(const unsigned char*, std::size_t, DOMLSParser&)>(
        &loadDocumentFromBuffer)));
    EXPECT_TRUE((is<DOMDocument*(const unsigned short*, DOMLSParser&)>(&loadDocumentFromFile)));
    EXPECT_TRUE(is<void(xercesc::DOMNode&)>(&cleanEmptyTextNodes));
    EXPECT_TRUE((is<void(const unsigned short*, Wide&)>(&utf16ToWstring)));
    EXPECT_TRUE(is<Initializer&()>(&Initializer::instance));
}

static_assert(
    std::is_same_v<decltype(std::declval<const UnicodeString&>().utf16()), const unsigned short*>);
static_assert(std::is_constructible_v<UnicodeString, const char*> &&
              std::is_constructible_v<UnicodeString, const unsigned short*>);

} // namespace
} // namespace Corvid::Testing
