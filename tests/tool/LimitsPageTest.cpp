#include "XMLBuilder/format/InlineDepth.h"
#include "editing/compare/Differences.h"
#include "editing/supplement/Filling.h"
#include "host/dictionary/DictionaryLimits.h"
#include "host/dictionary/Inheritance.h"
#include "host/klv/BerInput.h"
#include "host/mxf/HeaderMetadataReader.h"
#include "host/mxf/PartitionWalk.h"
#include "host/mxf/PrimerPack.h"
#include "host/mxf/RandomIndexPack.h"
#include "host/mxf/SetReader.h"
#include "host/mxf/rewrite/InPlaceForm.h"
#include "host/mxf/rewrite/RewritableFile.h"
#include "host/mxf/rewrite/disk/Journal.h"
#include "host/types/ByteRuns.h"
#include "host/xmlutils/LoadDocument.h"
#include "inspection/Summary.h"
#include "inspection/essence/ShownText.h"
#include "inspection/query/ParsePath.h"
#include "tests/support/MemoryBounds.h"
#include "tests/support/Paths.h"
#include "tools/corvid/FromXml.h"
#include "tools/corvid/batch/BatchOptions.h"
#include "tools/corvid/batch/NameList.h"
#include "tools/corvid/batch/Results.h"
#include "tools/corvid/batch/Summary.h"
#include "tools/corvid/input/DictionaryChoice.h"
#include "tools/corvid/remote/HttpFile.h"
#include "tools/corvid/reports/SummaryReport.h"
#include "tools/corvid/terminal/WarningLog.h"
#include "tools/corvid/xml/LenientDocument.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <regex>

using namespace Corvid;
using namespace Corvid::Testing;

namespace {

std::string textOf(const std::string& path) {
    std::ifstream file(sourceDir() / path);
    return {std::istreambuf_iterator<char>(file), {}};
}

struct Limit {
    std::string figure, constant, file;
};

/// The rows of the page that name a constant.
std::vector<Limit> limitsOfThePage() {
    const std::string page = textOf("docs/limits.md");
    const std::regex row(R"(\| [^|]* \| (\d+) \|[^\n]*`(\w+)` in `([\w/.]+)`[^|\n]*\|\n)");
    std::vector<Limit> limits;
    for (std::sregex_iterator each(page.begin(), page.end(), row), end; each != end; ++each) {
        limits.push_back({(*each)[1], (*each)[2], (*each)[3]});
    }
    return limits;
}

TEST(LimitsPage, tellsTheFiguresOfTheCode) {
#define CORVID_LIMIT(Scope, Name)                                                                  \
    { #Name, std::to_string(Scope Name) }
    const std::map<std::string, std::string> figures = {
        CORVID_LIMIT(mxf::, greatestRunIn),
        CORVID_LIMIT(KLV::BerLength::, greatestOctets),
        CORVID_LIMIT(mxf::, greatestSetSize),
        CORVID_LIMIT(mxf::, greatestPropertyCount),
        CORVID_LIMIT(mxf::, greatestPrimerSize),
        CORVID_LIMIT(mxf::, greatestRandomIndexPack),
        CORVID_LIMIT(mxf::, greatestWalk),
        CORVID_LIMIT(mxf::, greatestEssenceContainerCount),
        CORVID_LIMIT(mxf::, greatestGrowthStep),
        CORVID_LIMIT(mxf::, greatestTail),
        CORVID_LIMIT(mxf::Journal::, greatestRuns),
        CORVID_LIMIT(Tool::, greatestDictionary),
        CORVID_LIMIT(MetaMetadata::, deepestInheritance),
        CORVID_LIMIT(MetaMetadata::, mostNamespaces),
        CORVID_LIMIT(MetaMetadata::, longestName),
        CORVID_LIMIT(MetaMetadata::, longestUri),
        CORVID_LIMIT(MetaMetadata::, mostProperties),
        CORVID_LIMIT(MetaMetadata::, mostPropertiesOfAllSets),
        CORVID_LIMIT(Tool::, greatestDocument),
        CORVID_LIMIT(Editing::, greatestFilling),
        CORVID_LIMIT(XMLUtils::, maximumElementDepth),
        CORVID_LIMIT(XMLUtils::, maximumOpenAttributes),
        CORVID_LIMIT(XMLUtils::, maximumNames),
        CORVID_LIMIT(XMLBuilder::, greatestInlineDepth),
        CORVID_LIMIT(Types::ByteRun::, greatestSize),
        CORVID_LIMIT(Tool::, greatestKagSize),
        CORVID_LIMIT(Tool::WarningLog::, mostOfAKind),
        CORVID_LIMIT(Inspection::, longestKind),
        CORVID_LIMIT(Inspection::, longestShownText),
        CORVID_LIMIT(Tool::, greatestFetch),
        CORVID_LIMIT(Tool::, greatestWhole),
        CORVID_LIMIT(Tool::, longestHead),
        CORVID_LIMIT(Tool::, mostRedirects),
        CORVID_LIMIT(Tool::, mostRepeats),
        CORVID_LIMIT(Tool::, mostRequests),
        CORVID_LIMIT(Inspection::, longestChain),
        CORVID_LIMIT(Inspection::, mostTracks),
        CORVID_LIMIT(Inspection::, mostLocators),
        CORVID_LIMIT(Tool::, mostLines),
        CORVID_LIMIT(Inspection::, deepestConditions),
        CORVID_LIMIT(Tool::WarningLog::, longestText),
        CORVID_LIMIT(Editing::Differences::, mostListed),
        CORVID_LIMIT(Editing::Differences::, mostListedAtAll),
        CORVID_LIMIT(Tool::NameList::, longestPath),
        CORVID_LIMIT(Tool::Results::, mostWaiting),
        CORVID_LIMIT(Tool::Spool::, mostInMemory),
        CORVID_LIMIT(Tool::Summary::, mostFailures),
        CORVID_LIMIT(Tool::, mostJobs),
    };
#undef CORVID_LIMIT
    std::map<std::string, std::string> told;
    for (const Limit& limit : limitsOfThePage()) {
        const auto [place, isNew] = told.emplace(limit.constant, limit.figure);
        EXPECT_TRUE(isNew || place->second == limit.figure) << limit.constant;
        EXPECT_NE(textOf(limit.file).find(limit.constant + " = "), std::string::npos)
            << limit.constant << " in " << limit.file;
    }
    EXPECT_EQ(told, figures);
}

TEST(LimitsPage, tellsTheBoundsThatAreTested) {
    const std::string page = textOf("docs/limits.md");
    const auto tells = [&](const std::string& work, std::size_t multiple) {
        return page.find("| " + work + " | " + std::to_string(multiple) + " |") !=
               std::string::npos;
    };
    EXPECT_TRUE(tells("file to metadata", MemoryBounds::fileToMetadata));
    EXPECT_TRUE(tells("file to document, as `to-xml`", MemoryBounds::fileToText));
    EXPECT_TRUE(tells("file to JSON, as `to-json`", MemoryBounds::fileToJson));
    EXPECT_TRUE(tells("file to page, as `report`", MemoryBounds::fileToPage));
    EXPECT_TRUE(tells("file to all its values, as `get '**/*'`", MemoryBounds::fileToAnswers));
    EXPECT_TRUE(tells("file to nodes, as `partition2XML`", MemoryBounds::fileToDocument));
    EXPECT_TRUE(tells("file to document and back, as `check`", MemoryBounds::check));
    EXPECT_TRUE(
        tells("document to metadata, as `from-xml --lenient`", MemoryBounds::documentToMetadata));
    static_assert(MemoryBounds::constant == std::size_t{8} << 20);
    EXPECT_NE(page.find("so many times its size, and 8 MiB"), std::string::npos);
}

} // namespace
