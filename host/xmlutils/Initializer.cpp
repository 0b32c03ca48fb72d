#include "host/xmlutils/Initializer.h"

#include "host/xmlutils/XPathSupport.h"

#include <memory>
#include <xercesc/util/PlatformUtils.hpp>

namespace Corvid::XMLUtils {

namespace {

class ProcessInitializer final : public Initializer {};

} // namespace

Initializer::Initializer() { xercesc::XMLPlatformUtils::Initialize(); }

Initializer::~Initializer() { xercesc::XMLPlatformUtils::Terminate(); }

Initializer& Initializer::instance() {
    // Given up on purpose: its destructor would take the platform from documents that live on.
    static Initializer& initializer = *std::make_unique<ProcessInitializer>().release();
    return initializer;
}

xercesc::DOMImplementation* Initializer::domImplementation() {
    static xercesc::DOMImplementation* const implementation = startXPathSupport();
    return implementation;
}

} // namespace Corvid::XMLUtils
