#pragma once

#include "XMLBuilder/writer/DocumentPlan.h"
#include "XMLBuilder/writer/sinks/DocumentSink.h"

namespace Corvid::XMLBuilder {

/// Writes what is known as bytes with a key: a dark set, or a set of unknown class.
void writeDarkMetadata(const DocumentPlan::Floating& dark, DocumentSink& sink);

} // namespace Corvid::XMLBuilder
