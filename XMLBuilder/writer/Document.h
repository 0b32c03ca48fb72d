#pragma once

#include "XMLBuilder/writer/DocumentPlan.h"
#include "XMLBuilder/writer/sinks/DocumentSink.h"
#include "host/xmlutils/EncodingType.h"
#include "host/xmlutils/Layout.h"

#include <string_view>

namespace Corvid::DataIO {
class DataSink;
}

namespace Corvid::XMLUtils {
class InvalidCharacters;
}

namespace Corvid::XMLBuilder {

/// Writes the document of a plan.
void writeDocument(const DocumentPlan& plan, DocumentSink& sink);

/// The same as text, without a DOM: what XMLUtils::serialise() makes of the document.
/// @throws InvalidFormat  a character that `invalid` refuses. Part of the document may have gone to
///                        the sink.
void writeDocumentText(const DocumentPlan& plan, XMLUtils::EncodingType encoding,
                       XMLUtils::Layout layout, XMLUtils::InvalidCharacters& invalid,
                       DataIO::DataSink& sink, std::string_view inFront);

} // namespace Corvid::XMLBuilder
