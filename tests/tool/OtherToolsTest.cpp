#include "tests/tool/RunCommand.h"

#include <algorithm>
#include <gmock/gmock.h>

/// People take documents through programs that know XML but not this format. What comes out means
/// the same, so it has to give the same file.
namespace Corvid::Testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

/// Each real file as clip.mxf, with its document in.xml and what from-xml makes of that, in.mxf.
class RealDocuments : public ::testing::Test {
protected:
    template <class Body> void forEach(Body body) {
        auto folder = samplesDir();
        if (folder.empty()) {
            folder = sourceDir() / "examples";
        }
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            if (entry.path().extension() != ".mxf") {
                continue;
            }
            std::filesystem::copy_file(entry.path(), shop.path() / "clip.mxf",
                                       std::filesystem::copy_options::overwrite_existing);
            ASSERT_EQ(shop.run("corvid to-xml --replace-invalid clip.mxf -o in.xml").status, 0)
                << entry.path();
            const Outcome outcome = shop.run("corvid from-xml in.xml -o in.mxf");
            EXPECT_EQ(outcome.status, 0) << entry.path() << outcome.err;
            EXPECT_THAT(outcome.err, Not(HasSubstr("[no-instructions]"))) << entry.path();
            body(entry.path().filename().string());
        }
    }

    Workshop shop;
};

struct Tool {
    const char* name;
    const char* program;
    const char* line; ///< makes out.xml of in.xml
};
void PrintTo(const Tool& c, std::ostream* out) { *out << c.name; }

class DocumentsThroughATool : public RealDocuments, public ::testing::WithParamInterface<Tool> {};

TEST_P(DocumentsThroughATool, giveTheSameBytes) {
    if (shop.run(std::string("command -v ") + GetParam().program).status != 0) {
        GTEST_SKIP() << "no " << GetParam().program;
    }
    shop.write("identity.xsl",
               std::string("<xsl:stylesheet version='1.0' "
                           "xmlns:xsl='http://www.w3.org/1999/XSL/Transform'>"
                           "<xsl:template match='@*|node()'><xsl:copy>"
                           "<xsl:apply-templates select='@*|node()'/></xsl:copy></xsl:template>"
                           "</xsl:stylesheet>"));
    forEach([this](const std::string& name) {
        const Outcome tool = shop.run(std::string(GetParam().line) + " >out.xml");
        ASSERT_EQ(tool.status, 0) << name << tool.err;
        const Outcome outcome = shop.run("corvid from-xml out.xml -o out.mxf");
        EXPECT_EQ(outcome.status, 0) << name << outcome.err;
        EXPECT_THAT(outcome.err, Not(HasSubstr("[no-instructions]"))) << name;
        EXPECT_TRUE(shop.read("out.mxf") == shop.read("in.mxf")) << name;
    });
}

INSTANTIATE_TEST_SUITE_P(
    , DocumentsThroughATool,
    ::testing::Values(Tool{"XmlstarletFormat", "xmlstarlet", "xmlstarlet fo in.xml"},
                      Tool{"XmlstarletEdit", "xmlstarlet", "xmlstarlet ed -d //none in.xml"},
                      Tool{"XmllintFormat", "xmllint", "xmllint --format in.xml"},
                      Tool{"XmllintInLatin1", "xmllint", "xmllint --encode ISO-8859-1 in.xml"},
                      Tool{"XmllintInUtf16", "xmllint", "xmllint --encode UTF-16 in.xml"},
                      Tool{"CanonicalXml", "xmllint", "xmllint --c14n in.xml"},
                      Tool{"XsltIdentity", "xsltproc", "xsltproc identity.xsl in.xml"}),
    [](const auto& each) { return std::string(each.param.name); });

TEST_F(RealDocuments, giveTheSameThroughElementTreeLessWhatTheInstructionsCarried) {
    if (python().empty()) {
        GTEST_SKIP() << "no Python";
    }
    shop.write("through.py", std::string("import xml.etree.ElementTree as E\n"
                                         "E.parse('in.xml').write('tree.xml', 'UTF-8', True)\n"));
    forEach([this](const std::string& name) {
        ASSERT_EQ(shop.run("'" + python() + "' through.py").status, 0) << name;
        ASSERT_THAT(shop.read("tree.xml"), HasSubstr("<ns0:MetadataSets")) << name;
        ASSERT_EQ(shop.run("grep -v '^<?corvid ' in.xml >bare.xml").status, 0) << name;
        const Outcome tree = shop.run("corvid from-xml tree.xml -o tree.mxf");
        EXPECT_EQ(tree.status, 0) << name << tree.err;
        EXPECT_THAT(tree.err, HasSubstr("[no-instructions]")) << name;
        EXPECT_EQ(shop.run("corvid from-xml bare.xml -o bare.mxf").status, 0) << name;
        EXPECT_TRUE(shop.read("tree.mxf") == shop.read("bare.mxf")) << name;
        EXPECT_EQ(shop.run("corvid from-xml --warnings-as-errors tree.xml -o none.mxf").status, 1);
        EXPECT_FALSE(shop.has("none.mxf"));
    });
}

} // namespace
} // namespace Corvid::Testing
