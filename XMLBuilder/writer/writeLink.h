#pragma once

#include "XMLBuilder/format/Namespaces.h"
#include "XMLBuilder/writer/ToXMLBaseTypeVisitor.h"

namespace Corvid::XMLBuilder {

/// Writes an element with the identifier of the set that a reference leads to.
inline void writeLink(DocumentSink& sink, const DocumentSink::Name& name,
                      const Types::Reference& reference) {
    std::u16string identifier;
    ToXMLBaseTypeVisitor writer(identifier);
    reference.accept(writer);
    const DocumentSink::Attribute attribute{{Names::types.uri, Names::targetInstance}, identifier};
    sink.startElement(name, &attribute, 1);
    sink.endElement();
}

} // namespace Corvid::XMLBuilder
