#pragma once

#include "XMLBuilder/writer/sinks/DocumentSink.h"
#include "host/types/Types.h"

#include <string>

namespace Corvid::XMLBuilder {

/// Writes one value: as text or sub-elements of the element that is open, or as the value of an
/// attribute.
///
/// Only UUIDs and references can be written to an attribute, which stays empty for any other value.
/// Nothing is checked: a month of 13 is written as 13. Exceptions of the sink pass through.
class ToXMLBaseTypeVisitor : public Types::Visitors::Visitor {
public:
    /// Writes into the element that is open. The sink is borrowed.
    explicit ToXMLBaseTypeVisitor(DocumentSink& sink) : sink_(&sink) {}

    /// Writes the value of an attribute. Borrowed.
    explicit ToXMLBaseTypeVisitor(std::u16string& attribute) : attribute_(&attribute) {}

    // One body for every form of value; the list says which type has which.
#define CORVID_VALUE_TYPE(Class, Id, Form) void visit(const Types::Class& value) override;
#include "host/types/ValueTypes.def"

private:
    struct Forms;

    DocumentSink* sink_ = nullptr;
    std::u16string* attribute_ = nullptr;
};

} // namespace Corvid::XMLBuilder
