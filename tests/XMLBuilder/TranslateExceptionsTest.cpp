#include "XMLBuilder/reader/dom/TranslateExceptions.h"

#include "host/xmlutils/Initializer.h"
#include "tests/XMLBuilder/Things.h"

#include <stdexcept>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/IllegalArgumentException.hpp>
#include <xercesc/util/UTFDataFormatException.hpp>
#include <xercesc/util/XMLExceptMsgs.hpp>

#ifdef CORVID_WITH_XQILLA
#include <xqilla/exceptions/XQException.hpp>
#include <xqilla/exceptions/XQillaException.hpp>
#endif

namespace Corvid::Testing {
namespace {

using testing::StartsWith;
using XMLBuilder::EntryPoint;

template <class Body> Failure translation(Body body, EntryPoint entryPoint = EntryPoint::buffer) {
    XMLUtils::Initializer::instance();
    return failureOf<Exceptions::ParseError>([&] { XMLBuilder::translated(entryPoint, body); });
}

void expectTranslated(const Failure& failure) {
    EXPECT_EQ(failure.file, "Corvid/XMLUtils/Utils");
    EXPECT_EQ(failure.line, 207);
}

TEST(TranslateExceptions, tellsTheCodeOfADomException) {
    const Failure failure =
        translation([] { throw xercesc::DOMException(xercesc::DOMException::NAMESPACE_ERR, 0); });
    EXPECT_THAT(failure.message, StartsWith("DOMException:: "));
    EXPECT_EQ(failure.message.substr(failure.message.size() - 4), "(14)");
    EXPECT_NE(failure.message[failure.message.size() - 5], ' ');
    expectTranslated(failure);
}

TEST(TranslateExceptions, namesTheClassesOfXerces) {
    const Failure sax = translation([] { throw xercesc::SAXException("went wrong"); });
    EXPECT_EQ(sax.message, "class xercesc_3_0::SAXException: went wrong");
    expectTranslated(sax);
    const Failure utf = translation([] {
        throw xercesc::UTFDataFormatException(__FILE__, __LINE__,
                                              xercesc::XMLExcepts::UTF8_FormatError);
    });
    EXPECT_THAT(utf.message, StartsWith("class xercesc_3_0::UTFDataFormatException: "));
    expectTranslated(utf);
    const Failure other = translation([] {
        throw xercesc::IllegalArgumentException(__FILE__, __LINE__,
                                                xercesc::XMLExcepts::XMLNUM_emptyString);
    });
    EXPECT_THAT(other.message, StartsWith("class xercesc_3_0::XMLException: "));
    expectTranslated(other);
}

#ifdef CORVID_WITH_XQILLA
TEST(TranslateExceptions, tellsThoseOfXQilla) {
    const Failure xqilla =
        translation([] { throw XQillaException(XQillaException::RUNTIME_ERR, u"no such thing"); });
    EXPECT_EQ(xqilla.message, "XQillaException:: no such thing");
    expectTranslated(xqilla);
    const Failure xq = translation([] { throw XQException(u"bad query", u"f", 1, 2, "c", 3); });
    EXPECT_EQ(xq.message, "XQException:: bad query");
    expectTranslated(xq);
}
#endif

TEST(TranslateExceptions, letsOurOwnPassAsTheyAre) {
    const auto failure = failureOf<Exceptions::InvalidLength>([] {
        XMLBuilder::translated(EntryPoint::file,
                               [] { throw Exceptions::InvalidLength("m", "f", 3); });
    });
    EXPECT_EQ(failure.message, "m");
    EXPECT_EQ(failure.file, "f");
    EXPECT_EQ(failure.line, 3);
}

TEST(TranslateExceptions, tellsTheEntryPointOfAnUnknownError) {
    const std::pair<EntryPoint, int> lines[] = {
        {EntryPoint::buffer, 282}, {EntryPoint::string, 298}, {EntryPoint::file, 313}};
    for (const auto& [entryPoint, line] : lines) {
        const Failure failure = translation([] { throw std::runtime_error("x"); }, entryPoint);
        EXPECT_EQ(failure.message, "Unknown error in Xerces or XQilla");
        EXPECT_EQ(failure.file, "Corvid/XMLBuilder/XML2Partition");
        EXPECT_EQ(failure.line, line);
    }
}

} // namespace
} // namespace Corvid::Testing
