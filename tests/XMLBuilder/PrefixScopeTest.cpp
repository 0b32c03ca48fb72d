#include "XMLBuilder/reader/nodes/PrefixScope.h"

#include "tests/XMLBuilder/ParsedDocument.h"

#include <gtest/gtest.h>

#include <random>

namespace Corvid::Testing {
namespace {

using XMLBuilder::DocumentNode;
using XMLBuilder::PrefixScope;

std::u16string textOf(const char16_t* text) { return text == nullptr ? u"none" : text; }

TEST(PrefixScope, knowsWhatIsDeclaredAroundAnElement) {
    ParsedDocument document("<r xmlns:a='urn:1'><s><t xmlns:a='urn:2'><u/></t></s></r>");
    const auto& s = *firstElement(document.tree());
    const auto& u = *firstElement(*firstElement(s));
    PrefixScope root(document.tree());
    PrefixScope ofS(s, root);
    PrefixScope ofU(u, ofS);
    EXPECT_EQ(textOf(ofU.uriOf(u"a")), u"urn:2");
    EXPECT_EQ(textOf(ofS.uriOf(u"a")), u"urn:1");
    EXPECT_EQ(textOf(ofS.uriOf(u"a")), u"urn:1");
    EXPECT_EQ(textOf(ofU.uriOf(u"b")), u"none");
    EXPECT_EQ(textOf(PrefixScope(u, root).uriOf(u"a")), u"urn:2");
}

TEST(PrefixScope, takesNoOtherAttributeForADeclaration) {
    ParsedDocument document("<r xmlns:a='urn:1'><s xmlns='urn:2' xmlnsa='urn:3' b='urn:4'/></r>");
    PrefixScope root(document.tree());
    PrefixScope ofS(*firstElement(document.tree()), root);
    EXPECT_EQ(textOf(ofS.uriOf(u"a")), u"urn:1");
    for (const char16_t* prefix : {u"", u"b", u"xmlns", u"xml", u":a"}) {
        EXPECT_EQ(textOf(ofS.uriOf(prefix)), u"none");
    }
}

const xercesc::DOMNode& domOf(const DocumentNode& node) {
    return *static_cast<const xercesc::DOMNode*>(node.origin);
}

class RandomDocument {
public:
    explicit RandomDocument(unsigned seed) : random_(seed) {}

    std::string make() { return "<r xmlns:a='urn:0' xmlns:b='urn:1'>" + inside(0) + "</r>"; }
    /// Whether the way into the document has a scope for an element.
    bool hasScope() { return below(2) == 0; }

private:
    unsigned below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }

    std::string inside(int depth) {
        std::string xml;
        for (unsigned count = depth == 8 ? 0 : below(3); count != 0; --count) {
            xml += "<e";
            for (const char* name : {"xmlns:a", "xmlns:b", "xmlns:c", "xmlns", "a:x"}) {
                if (below(6) == 0) {
                    xml += std::string(" ") + name + "='urn:" + std::to_string(below(9)) + "'";
                }
            }
            xml += ">" + inside(depth + 1) + "</e>";
        }
        return xml;
    }

    std::mt19937 random_;
};

/// Compares with Xerces-C, which goes up to the root for each answer.
void compare(RandomDocument& random, const DocumentNode& element, PrefixScope& scope) {
    for (const char16_t* prefix : {u"a", u"b", u"c", u"d", u"a"}) {
        EXPECT_EQ(textOf(scope.uriOf(prefix)), textOf(domOf(element).lookupNamespaceURI(prefix)));
    }
    for (const auto* child = firstElement(element); child != nullptr; child = nextElement(*child)) {
        if (random.hasScope()) {
            PrefixScope inner(*child, scope);
            compare(random, *child, inner);
        } else {
            for (const auto* further = firstElement(*child); further != nullptr;
                 further = nextElement(*further)) {
                PrefixScope inner(*further, scope);
                compare(random, *further, inner);
            }
        }
    }
}

TEST(PrefixScope, findsTheNamespacesThatXercesFinds) {
    for (unsigned seed = 0; seed != 300; ++seed) {
        RandomDocument random(seed);
        ParsedDocument document(random.make());
        PrefixScope root(document.tree());
        compare(random, document.tree(), root);
    }
}

TEST(PrefixScope, findsThatADeclarationIsTakenBack) {
    ParsedDocument document("<?xml version='1.1'?><r xmlns:a='urn:1'><s xmlns:a=''><t/></s></r>");
    const auto& s = *firstElement(document.tree());
    PrefixScope root(document.tree());
    PrefixScope ofS(s, root);
    PrefixScope ofT(*firstElement(s), ofS);
    for (auto* scope : {&ofS, &ofT}) {
        EXPECT_EQ(textOf(scope->uriOf(u"a")), textOf(domOf(s).lookupNamespaceURI(u"a")));
    }
}

} // namespace
} // namespace Corvid::Testing
