#include "host/xmlutils/Initializer.h"

#include "tests/xmlutils/Documents.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace Corvid::XMLUtils {
namespace {

using namespace xercesc;

TEST(Initializer, startsOnceForThreadsThatComeTogether) {
    std::vector<Initializer*> instances(8);
    std::vector<DOMImplementation*> implementations(8);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i != instances.size(); ++i) {
        threads.emplace_back([&, i] {
            instances[i] = &Initializer::instance();
            implementations[i] = instances[i]->domImplementation();
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (std::size_t i = 0; i != instances.size(); ++i) {
        EXPECT_EQ(instances[i], instances[0]);
        EXPECT_EQ(implementations[i], implementations[0]);
        EXPECT_NE(implementations[i], nullptr);
    }
}

TEST(Initializer, keepsThePlatformWhenAnotherUserStopsIt) {
    Initializer::instance();
    XMLPlatformUtils::Initialize();
    XMLPlatformUtils::Terminate();
    EXPECT_NE(Testing::makeDocument(), nullptr);
}

/// Outlives main() and everything that is made later than it.
Testing::Document documentThatOutlivesMain;

TEST(Initializer, letsADocumentOutliveMain) {
    documentThatOutlivesMain = Testing::makeRootedDocument();
    EXPECT_NE(documentThatOutlivesMain->getDocumentElement(), nullptr);
}

#ifdef CORVID_WITH_XQILLA
TEST(Initializer, givesAnImplementationWhoseDocumentsAnswerXPath) {
    const Testing::Parser parser = Testing::makeParser();
    DOMDocument* const document = Testing::load("<a><b/><c/><b/></a>", *parser);
    const auto iterator = static_cast<DOMXPathResult::ResultType>(101);
    const std::unique_ptr<DOMXPathNSResolver, Testing::Releaser> resolver(
        document->createNSResolver(document->getDocumentElement()));
    const std::unique_ptr<DOMXPathResult, Testing::Releaser> result(document->evaluate(
        u"./b", document->getDocumentElement(), resolver.get(), iterator, nullptr));
    ASSERT_NE(result, nullptr);
    EXPECT_TRUE(result->iterateNext());
    EXPECT_TRUE(result->iterateNext());
    EXPECT_FALSE(result->iterateNext());
}
#endif

} // namespace
} // namespace Corvid::XMLUtils
