#include "tools/corvid/xml/XercesFailures.h"

#include "host/base/Exceptions.h"
#include "host/xmlutils/XmlText.h"

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/util/XMLException.hpp>

namespace Corvid::Tool {

namespace {

[[noreturn]] void rethrow(const XMLCh* message) {
    throw Exceptions::InvalidFormat("Xerces-C: " + Platform::toUtf8(XMLUtils::fromXml(message)),
                                    CORVID_HERE);
}

} // namespace

void translateXerces(const std::function<void()>& work) {
    try {
        work();
    } catch (const xercesc::XMLException& error) {
        rethrow(error.getMessage());
    } catch (const xercesc::DOMException& error) {
        rethrow(error.getMessage());
    }
}

} // namespace Corvid::Tool
