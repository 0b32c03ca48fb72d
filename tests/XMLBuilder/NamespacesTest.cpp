#include "XMLBuilder/reader/nodes/NodeText.h"
#include "XMLBuilder/reader/stream/StreamParser.h"
#include "host/base/Exceptions.h"
#include "host/dataio/Memory.h"

#include <expat.h>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <string>
#include <vector>

/// The namespaces of names, against those that expat finds where it looks after them itself.
namespace Corvid::XMLBuilder {
namespace {

/// The names of a document, elements and then their attributes, as "namespace local name"; nothing
/// but "refused" where it is.
using Names = std::vector<std::string>;
const Names refused{"refused"};

class Found final : public StreamHandler {
public:
    Names names;

    void instruction(const Instruction& /*instruction*/) override {}
    void beginRoot(const DocumentNode& root) override { addAll(root); }
    void childOfRoot(const DocumentNode& child) override { addAll(child); }
    bool isContainer(const DocumentNode& /*child*/) override { return false; }
    void childOfContainer(const DocumentNode& /*child*/) override {}
    void strayText(const DocumentNode& /*text*/) override {}
    void endDocument() override {}

private:
    void add(const DocumentNode& node) {
        names.push_back(narrow(node.uri == nullptr ? u"" : node.uri) + ' ' + narrow(node.local));
    }
    void addAll(const DocumentNode& element) {
        add(element);
        for (const auto* each = element.firstAttribute; each != nullptr; each = each->next) {
            add(*each);
        }
        for (const auto* each = firstElement(element); each != nullptr; each = nextElement(*each)) {
            addAll(*each);
        }
    }
};

Names ours(const std::string& document) {
    DataIO::Memory::MemoryDataSource source(reinterpret_cast<const unsigned char*>(document.data()),
                                            document.size());
    Found found;
    try {
        parseStream(source, found);
    } catch (const Exceptions::ParseError&) {
        return refused;
    }
    return found.names;
}

Names thoseOfExpat(const std::string& document) {
    struct Free {
        void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
    };
    const std::unique_ptr<XML_ParserStruct, Free> parser(XML_ParserCreateNS(nullptr, ' '));
    Names names;
    XML_SetUserData(parser.get(), &names);
    XML_SetStartElementHandler(parser.get(),
                               [](void* data, const XML_Char* name, const XML_Char** attributes) {
                                   const auto add = [&](const std::string& each) {
                                       static_cast<Names*>(data)->push_back(
                                           each.find(' ') == std::string::npos ? ' ' + each : each);
                                   };
                                   add(name);
                                   for (; *attributes != nullptr; attributes += 2) {
                                       add(*attributes);
                                   }
                               });
    return XML_Parse(parser.get(), document.data(), static_cast<int>(document.size()), 1) ==
                   XML_STATUS_OK
               ? names
               : refused;
}

/// A document of nested elements, whose names and declarations are drawn from a few that often
/// mean something and sometimes nothing.
class Drawn {
public:
    explicit Drawn(unsigned seed) : random_(seed) {}

    std::string element(int depth) {
        const std::string name = prefix() + draw({"x", "y"});
        std::string text = '<' + name;
        for (int k = number(4); k > 0; --k) {
            text +=
                ' ' + (number(2) == 0 ? declaration() : prefix() + draw({"p", "q", "r"}) + "=''");
        }
        text += '>';
        for (int k = depth == 0 ? 0 : number(4); k > 0; --k) {
            text += element(depth - 1);
        }
        return text + "</" + name + '>';
    }

private:
    std::string prefix() {
        return draw({"", "", "a:", "a:", "b:", "xml:", "c:", ":", "a:b:", "a:1"}, 6);
    }
    std::string declaration() {
        return draw(
                   {"xmlns", "xmlns:a", "xmlns:b", "xmlns:a", "xmlns:xml", "xmlns:xmlns", "xmlns:"},
                   4) +
               "='" +
               draw({"", "urn:1", "urn:2", "urn:1", "http://www.w3.org/XML/1998/namespace",
                     "http://www.w3.org/2000/xmlns/"},
                    4) +
               '\'';
    }

    /// One of the first so many; once in sixty one of all, so that most documents are right.
    std::string draw(const std::vector<std::string>& from, int usual = 0) {
        const int all = static_cast<int>(from.size());
        return from[static_cast<std::size_t>(number(usual == 0 || number(60) == 0 ? all : usual))];
    }
    int number(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }

    std::mt19937 random_;
};

TEST(NamespacesTest, areThoseThatExpatFinds) {
    int right = 0, wrong = 0;
    for (unsigned seed = 0; seed != 20000; ++seed) {
        const std::string document = Drawn(seed).element(3);
        const Names expected = thoseOfExpat(document);
        ASSERT_EQ(ours(document), expected) << document;
        ++(expected == refused ? wrong : right);
    }
    // Neither is the exception.
    EXPECT_GT(right, 1000);
    EXPECT_GT(wrong, 1000);
}

} // namespace
} // namespace Corvid::XMLBuilder
