#pragma once

#include "Corvid_XMLUtils/Export.h"
#include "host/xmlutils/XercesForward.h"

namespace Corvid::XMLUtils {

/// Keeps the XML platform running.
///
/// Xerces-C comes up with the first call of instance() and stays up until the process ends: a
/// document may live in a static object of the application, whose destructor can run after any
/// point at which this library could shut the platform down.
class CORVID_XMLUTILS_EXPORT Initializer {
public:
    /// Starts Xerces-C, once per process. Threads may make their first call at the same time.
    /// @throws xercesc::XMLException  Xerces-C can't start; the next call tries again.
    static Initializer& instance();

    Initializer(const Initializer&) = delete;
    Initializer& operator=(const Initializer&) = delete;
    virtual ~Initializer();

    /// The implementation whose parsers make documents for the reader: XQilla's, so that the
    /// documents answer XPath, or Xerces-C's own in a build without XQilla. XQilla comes up with
    /// the first call. Afterwards the registry gives XQilla's implementation for "Core" too.
    /// @return never null; belongs to the library that made it. Threads may share it.
    virtual xercesc::DOMImplementation* domImplementation();

protected:
    Initializer();
};

} // namespace Corvid::XMLUtils
