#include "XMLBuilder/reader/dom/TranslateExceptions.h"

#include "XMLBuilder/format/NumberText.h"
#include "host/base/Exceptions.h"
#include "host/xmlutils/XmlText.h"

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/UTFDataFormatException.hpp>
#include <xercesc/util/XMLException.hpp>

#include <string>

#ifdef CORVID_WITH_XQILLA
#include <xqilla/exceptions/XQException.hpp>
#include <xqilla/exceptions/XQillaException.hpp>
#endif

namespace Corvid::XMLBuilder {

namespace {

using Exceptions::ParseError;
namespace Text = CallerContract::Text;

/// @param prefix  names the kind of failure; ": " comes between it and the text.
[[noreturn]] void throwParseError(const XMLCh* prefix, const XMLCh* text,
                                  const XMLCh* suffix = u"") {
    const std::u16string message =
        std::u16string(prefix) + u": " + (text == nullptr ? u"" : text) + suffix;
    throw ParseError(XMLUtils::fromXml(message.c_str()), CallerContract::File::translation,
                     CallerContract::Line::translation);
}

} // namespace

void rethrowTranslated(EntryPoint entryPoint) {
    try {
        throw;
#ifdef CORVID_WITH_XQILLA
    } catch (const XQillaException& e) { // is a DOMException too
        throwParseError(Text::ofXQilla, e.getString());
    } catch (const XQException& e) {
        throwParseError(Text::ofXQuery, e.getError());
#endif
    } catch (const xercesc::DOMException& e) {
        const std::u16string code = std::u16string(u"(") + DecimalText(int{e.code}).c_str() + u")";
        throwParseError(Text::ofDom, e.msg, code.c_str());
    } catch (const xercesc::UTFDataFormatException& e) { // is an XMLException too
        throwParseError(Text::ofEncoding, e.getMessage());
    } catch (const xercesc::SAXException& e) {
        throwParseError(Text::ofSax, e.getMessage());
    } catch (const xercesc::XMLException& e) {
        throwParseError(Text::ofXml, e.getMessage());
    } catch (const Exceptions::BaseException&) {
        throw;
    } catch (...) {
        throw ParseError(Text::unknownError, CallerContract::File::reader,
                         static_cast<int>(entryPoint));
    }
}

} // namespace Corvid::XMLBuilder
