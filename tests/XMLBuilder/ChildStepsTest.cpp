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
using XMLBuilder::DocumentNode;
using XMLBuilder::PrefixScope;

TEST(ChildSteps, areNotPlainWhereANameIsNoNCName) {
    ParsedDocument document("<r/>");
    const auto& nodes = document.nodes();
    EXPECT_TRUE(nodes.isPlain(u"a", u"one"));
    EXPECT_TRUE(nodes.isPlain(u"a", u"_\u00E9-1.b"));
    for (const char16_t* name : {u"", u"1", u"a b", u"*", u"a[1]", u"a:b", u"-a", u"a/b"}) {
        EXPECT_FALSE(nodes.isPlain(u"a", name));
        EXPECT_FALSE(nodes.isPlain(name, u"a"));
    }
}

TEST(ChildSteps, listChildElementsOnlyAndInOrder) {
    ParsedDocument document("<r>t<a/><!--c--><b><x/></b><?p i?><![CDATA[d]]><a/></r>");
    std::string names;
    for (const auto* e = firstElement(document.tree()); e; e = nextElement(*e)) {
        names += Platform::toUtf8(XMLUtils::fromXml(e->name));
    }
    EXPECT_EQ(names, "aba");
    EXPECT_EQ(firstElement(*document.tree().firstChild), nullptr);
}

TEST(ChildSteps, matchByExpandedNameWhateverThePrefix) {
    ParsedDocument document(
        "<r xmlns:a='urn:1' xmlns:z='urn:1'><n/><a:n xmlns:a='urn:2'/><z:n/></r>");
    ChildSteps children;
    children.reset(document.tree());
    const auto* third = nextElement(*nextElement(*firstElement(document.tree())));
    EXPECT_EQ(children.first(ChildStep(u"a", u"n", true), u"urn:1"), third);
    EXPECT_EQ(ChildSteps::first(document.tree(), u"n", u"urn:1"), third);
    EXPECT_EQ(children.first(ChildStep(u"a", u"n", true), u"urn:9"), nullptr);
    EXPECT_EQ(ChildSteps::next(*third, u"n", u"urn:1"), nullptr);
}

#ifdef CORVID_WITH_XQILLA

const void* originOf(const DocumentNode* node) { return node == nullptr ? nullptr : node->origin; }

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

using Nodes = std::vector<const void*>; // of the DOM

/// What XQilla finds, in order.
Nodes withXQilla(const DocumentNode& from, const std::u16string& expression) {
    const auto& context = *static_cast<const xercesc::DOMNode*>(from.origin);
    auto& document = *context.getOwnerDocument();
    const std::unique_ptr<xercesc::DOMXPathNSResolver, Release> names(
        document.createNSResolver(&context));
    const std::unique_ptr<xercesc::DOMXPathExpression, Release> compiled(
        document.createExpression(expression.c_str(), names.get()));
    const std::unique_ptr<xercesc::DOMXPathResult, Release> result(
        compiled->evaluate(&context, xercesc::DOMXPathResult::ITERATOR_RESULT_TYPE, nullptr));
    Nodes nodes;
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
        PrefixScope root(document.tree());
        for (const auto* set = firstElement(document.tree()); set != nullptr;
             set = nextElement(*set)) {
            Nodes all;
            for (const auto* e = firstElement(*set); e; e = nextElement(*e)) {
                all.push_back(e->origin);
            }
            ASSERT_EQ(all, withXQilla(*set, u"./*"));

            children.reset(*set);
            const char16_t* prefix = pick(random, {u"a", u"b", u"c"});
            const char16_t* name = pick(random, {u"one", u"two", u"three", u"four"});
            const auto expected = withXQilla(*set, std::u16string(u"./") + prefix + u":" + name);
            const auto* const first = expected.empty() ? nullptr : expected.front();
            const char16_t* uri = PrefixScope(*set, root).uriOf(prefix);
            const ChildStep step(prefix, name, true);
            EXPECT_EQ(originOf(children.first(step, uri)), first);
            EXPECT_EQ(originOf(document.nodes().evaluate(*set, step, nullptr)), first);
            Nodes found;
            for (const auto* e = ChildSteps::first(*set, name, uri); e;
                 e = ChildSteps::next(*e, name, uri)) {
                found.push_back(e->origin);
            }
            EXPECT_EQ(found, expected);
        }
    }
}

TEST(ChildSteps, evaluateTextsThatAreExpressionsOfTheirOwn) {
    ParsedDocument document("<r xmlns:a='urn:1'><a:n/><a:n id='2'/></r>");
    const auto* second = nextElement(*firstElement(document.tree()));
    EXPECT_EQ(document.nodes().evaluate(document.tree(), ChildStep(u"a", u"n[2]", false), nullptr),
              second);
}

TEST(ChildSteps, evaluateAStepThatLeadsOutOfTheContext) {
    ParsedDocument document("<r xmlns:a='urn:1'><a:n id='2'><x/></a:n></r>");
    const auto* const attribute =
        document.nodes().evaluate(document.tree(), ChildStep(u"a", u"n/@id", false), nullptr);
    ASSERT_NE(attribute, nullptr);
    EXPECT_EQ(attribute->kind, DocumentNode::Kind::attribute);
    EXPECT_EQ(std::u16string(attribute->value), u"2");
    const auto* const inner =
        document.nodes().evaluate(document.tree(), ChildStep(u"a", u"n/x", false), nullptr);
    ASSERT_NE(inner, nullptr);
    EXPECT_EQ(std::u16string(inner->name), u"x");
}

#endif

TEST(ChildSteps, bindAPrefixThatTheDocumentDoesNotDeclare) {
    ParsedDocument document("<r><n xmlns='urn:1'/></r>");
    EXPECT_EQ(document.nodes().evaluate(document.tree(), ChildStep(u"a", u"n", true), u"urn:1"),
              document.tree().firstChild);
}

TEST(ChildSteps, failForAnUnboundPrefixAndAnImpossibleName) {
    ParsedDocument document("<r/>");
    const auto evaluate = [&](const ChildStep& step, const char16_t* uri) {
        document.nodes().evaluate(document.tree(), step, uri);
    };
    EXPECT_ANY_THROW(evaluate(ChildStep(u"nowhere", u"n", true), nullptr));
    EXPECT_ANY_THROW(evaluate(ChildStep(u"a", u"1[", false), u"urn:1"));
}

} // namespace
} // namespace Corvid::Testing
