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

// XQilla does not wait for the first query: from the first document read on, new documents of the
// process come from it and answer XPath, which programs may rely on. It would save little: to start
// XQilla is less than 1 % of what a process does that reads a document of 50 sets.
xercesc::DOMImplementation* Initializer::domImplementation() {
    static xercesc::DOMImplementation* const implementation = startXPathSupport();
    return implementation;
}

} // namespace Corvid::XMLUtils
