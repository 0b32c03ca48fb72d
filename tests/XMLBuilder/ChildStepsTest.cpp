#include "XMLBuilder/reader/ChildSteps.h"

#include "XMLBuilder/reader/PrefixScope.h"
#include "tests/XMLBuilder/ParsedDocument.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <vector>

namespace Corvid::Testing {
namespace {

using XMLBuilder::ChildStep;
using XMLBuilder::ChildSteps;
using XMLBuilder::PrefixScope;

TEST(ChildSteps, areNotPlainWhereANameIsNoNCName) {
    EXPECT_TRUE(ChildStep(u"a", u"one").isPlain());
    EXPECT_TRUE(ChildStep(u"a", u"_\u00E9-1.b").isPlain());
    for (const char16_t* name : {u"", u"1", u"a b", u"*", u"a[1]", u"a:b", u"-a", u"a/b"}) {
        EXPECT_FALSE(ChildStep(u"a", name).isPlain());
        EXPECT_FALSE(ChildStep(name, u"a").isPlain());
    }
}

TEST(ChildSteps, listChildElementsOnlyAndInOrder) {
    ParsedDocument document("<r>t<a/><!--c--><b><x/></b><?p i?><![CDATA[d]]><a/></r>");
    std::string names;
    for (auto* e = ChildSteps::firstElement(document.root()); e; e = ChildSteps::nextElement(*e)) {
        names += Platform::toUtf8(XMLUtils::fromXml(e->getNodeName()));
    }
    EXPECT_EQ(names, "aba");
    EXPECT_EQ(ChildSteps::firstElement(*document.root().getFirstChild()), nullptr);
}

TEST(ChildSteps, matchByExpandedNameWhateverThePrefix) {
    ParsedDocument document(
        "<r xmlns:a='urn:1' xmlns:z='urn:1'><n/><a:n xmlns:a='urn:2'/><z:n/></r>");
    ChildSteps children;
    children.reset(document.root());
    auto* third = static_cast<xercesc::DOMElement*>(document.root().getLastChild());
    EXPECT_EQ(children.first(ChildStep(u"a", u"n"), u"urn:1"), third);
    EXPECT_EQ(ChildSteps::first(document.root(), u"n", u"urn:1"), third);
    EXPECT_EQ(children.first(ChildStep(u"a", u"n"), u"urn:9"), nullptr);
    EXPECT_EQ(ChildSteps::next(*third, u"n", u"urn:1"), nullptr);
}

#ifdef CORVID_WITH_XQILLA

const char16_t* pick(std::mt19937& random, std::initializer_list<const char16_t*> from) {
    return from.begin()[random() % from.size()];
}

std::string randomDocument(std::mt19937& random) {
    const auto one = [&random](std::initializer_list<const char*> from) {
        return std::string(from.begin()[random() % from.size()]);
    };
    std::string xml = "<r xmlns:a='urn:1' xmlns:b='urn:2' xmlns:c='urn:1'>";
    for (int sets = 0; sets != 3; ++sets) {
        xml += "<a:set" + one({"", " xmlns:a='urn:3'", " xmlns='urn:1'", " x='1'"}) + ">";
        for (auto children = random() % 20; children != 0; --children) {
            xml += one({"", "text", "<!-- c -->", "<?p i?>", "<![CDATA[d]]>", "\n"});
            const std::string name = one({"a:", "b:", "c:", ""}) + one({"one", "two", "three"});
            xml += "<" + name + one({"", " xmlns:b='urn:1'", " xmlns='urn:2'"}) + ">" +
                   one({"", "<a:one/>", "5"}) + "</" + name + ">";
        }
        xml += "</a:set>";
    }
    return xml + "</r>";
}

/// What XQilla finds, in order.
std::vector<xercesc::DOMNode*> withXQilla(const xercesc::DOMElement& context,
                                          const std::u16string& expression) {
    auto& document = *context.getOwnerDocument();
    const std::unique_ptr<xercesc::DOMXPathNSResolver, Release> names(
        document.createNSResolver(&context));
    const std::unique_ptr<xercesc::DOMXPathExpression, Release> compiled(
        document.createExpression(expression.c_str(), names.get()));
    const std::unique_ptr<xercesc::DOMXPathResult, Release> result(
        compiled->evaluate(&context, xercesc::DOMXPathResult::ITERATOR_RESULT_TYPE, nullptr));
    std::vector<xercesc::DOMNode*> nodes;
    while (result->iterateNext()) {
        nodes.push_back(result->getNodeValue());
    }
    return nodes;
}

TEST(ChildSteps, findTheNodesThatXQillaFinds) {
    std::mt19937 random(652);
    for (int round = 0; round != 60; ++round) {
        ParsedDocument document(randomDocument(random));
        ChildSteps children;
        PrefixScope root(document.root());
        for (auto* set = document.root().getFirstElementChild(); set != nullptr;
             set = set->getNextElementSibling()) {
            std::vector<xercesc::DOMNode*> all;
            for (auto* e = ChildSteps::firstElement(*set); e; e = ChildSteps::nextElement(*e)) {
                all.push_back(e);
            }
            ASSERT_EQ(all, withXQilla(*set, u"./*"));

            children.reset(*set);
            const char16_t* prefix = pick(random, {u"a", u"b", u"c"});
            const char16_t* name = pick(random, {u"one", u"two", u"three", u"four"});
            const auto expected = withXQilla(*set, std::u16string(u"./") + prefix + u":" + name);
            const XMLCh* uri = PrefixScope(*set, root).uriOf(prefix);
            const ChildStep step(prefix, name);
            EXPECT_EQ(children.first(step, uri), expected.empty() ? nullptr : expected.front());
            EXPECT_EQ(ChildSteps::evaluate(*set, *set, step, nullptr),
                      expected.empty() ? nullptr : expected.front());
            std::vector<xercesc::DOMNode*> found;
            for (auto* e = ChildSteps::first(*set, name, uri); e;
                 e = ChildSteps::next(*e, name, uri)) {
                found.push_back(e);
            }
            EXPECT_EQ(found, expected);
        }
    }
}

TEST(ChildSteps, evaluateTextsThatAreExpressionsOfTheirOwn) {
    ParsedDocument document("<r xmlns:a='urn:1'><a:n/><a:n id='2'/></r>");
    const auto* second = document.root().getLastChild();
    EXPECT_EQ(
        ChildSteps::evaluate(document.root(), document.root(), ChildStep(u"a", u"n[2]"), nullptr),
        second);
}

#endif

TEST(ChildSteps, bindAPrefixThatTheDocumentDoesNotDeclare) {
    ParsedDocument document("<r><n xmlns='urn:1'/></r>");
    EXPECT_EQ(
        ChildSteps::evaluate(document.root(), document.root(), ChildStep(u"a", u"n"), u"urn:1"),
        document.root().getFirstChild());
}

TEST(ChildSteps, failForAnUnboundPrefixAndAnImpossibleName) {
    ParsedDocument document("<r/>");
    EXPECT_ANY_THROW(ChildSteps::evaluate(document.root(), document.root(),
                                          ChildStep(u"nowhere", u"n"), nullptr));
    EXPECT_ANY_THROW(
        ChildSteps::evaluate(document.root(), document.root(), ChildStep(u"a", u"1["), u"urn:1"));
}

} // namespace
} // namespace Corvid::Testing
