#include "XMLBuilder/reader/nodes/ChildSteps.h"

#include "XMLBuilder/reader/nodes/PrefixScope.h"
#include "tests/XMLBuilder/ParsedDocument.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <vector>

namespace Corvid::Testing {
namespace {

using XMLBuilder::ChildSteps;
using XMLBuilder::DocumentNode;
using XMLBuilder::HashedName;
using XMLBuilder::PrefixScope;

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
    EXPECT_EQ(children.first(HashedName(u"n"), u"urn:1"), third);
    EXPECT_EQ(ChildSteps::first(document.tree(), u"n", u"urn:1"), third);
    EXPECT_EQ(children.first(HashedName(u"n"), u"urn:9"), nullptr);
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
            EXPECT_EQ(originOf(children.first(HashedName(name), uri)), first);
            EXPECT_TRUE(first == nullptr || children.mayHave(HashedName(name)));
            Nodes found;
            for (const auto* e = ChildSteps::first(*set, name, uri); e;
                 e = ChildSteps::next(*e, name, uri)) {
                found.push_back(e->origin);
            }
            EXPECT_EQ(found, expected);
        }
    }
}

#endif

TEST(ChildSteps, failForAPrefixThatNothingDeclares) {
    ParsedDocument document("<r/>");
    EXPECT_ANY_THROW(document.nodes().refusePrefix(document.tree(), u"nowhere"));
}

} // namespace
} // namespace Corvid::Testing
