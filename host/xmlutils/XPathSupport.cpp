#include "host/xmlutils/XPathSupport.h"

#include "host/base/Exceptions.h"

#include <xercesc/dom/DOMImplementation.hpp>
#include <xercesc/dom/DOMImplementationRegistry.hpp>
#ifdef CORVID_WITH_XQILLA
#include <xqilla/utils/XQillaPlatformUtils.hpp>
#endif

namespace Corvid::XMLUtils {

xercesc::DOMImplementation* startXPathSupport() {
#ifdef CORVID_WITH_XQILLA
    const XMLCh* const feature = u"XPath2 3.0";
    XQillaPlatformUtils::initialize();
#else
    const XMLCh* const feature = u"Core";
#endif
    auto* const implementation = xercesc::DOMImplementationRegistry::getDOMImplementation(feature);
    if (implementation == nullptr) {
        throw Exceptions::InvalidArgument("XML platform: no DOM implementation with XPath is "
                                          "registered, expected one",
                                          CORVID_HERE);
    }
    return implementation;
}

} // namespace Corvid::XMLUtils
