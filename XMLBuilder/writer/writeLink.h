#pragma once

#include "XMLBuilder/format/HexBytes.h"
#include "XMLBuilder/format/Namespaces.h"
#include "XMLBuilder/writer/sinks/DocumentSink.h"
#include "host/types/References.h"

namespace Corvid::XMLBuilder {

/// Writes an element with the identifier of the set that a reference leads to.
inline void writeLink(DocumentSink& sink, const DocumentSink::Name& name,
                      const Types::Reference& reference) {
    const DottedText identifier(reference.uuid());
    const DocumentSink::Attribute attribute{{Names::types.uri, Names::targetInstance}, identifier};
    sink.startElement(name, &attribute, 1);
    sink.endElement();
}

} // namespace Corvid::XMLBuilder
