#include "host/xmlutils/ExceptionText.h"

#include "host/base/ExceptionText.h"
#include "host/xmlutils/XmlText.h"

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/XMLException.hpp>
#ifdef CORVID_WITH_XQILLA
#include <xqilla/exceptions/XQException.hpp>
#endif

namespace Corvid::XMLUtils {

namespace {

std::string textOf(const XMLCh* message, const char* otherwise) {
    return message == nullptr || *message == 0 ? otherwise : Platform::toUtf8(fromXml(message));
}

} // namespace

std::string currentMessage() {
    try {
        throw;
    } catch (const xercesc::XMLException& error) {
        return textOf(error.getMessage(), "error of Xerces-C");
    } catch (const xercesc::SAXException& error) {
        return textOf(error.getMessage(), "error of Xerces-C");
    } catch (const xercesc::DOMException& error) {
        const std::string code = "DOM error " + std::to_string(error.code);
        return textOf(error.getMessage(), code.c_str());
    } catch (const xercesc::OutOfMemoryException&) {
        return "not enough memory";
#ifdef CORVID_WITH_XQILLA
    } catch (const XQException& error) {
        return textOf(error.getError(), "error of XQilla");
#endif
    } catch (...) {
        return Exceptions::currentMessage();
    }
}

} // namespace Corvid::XMLUtils
