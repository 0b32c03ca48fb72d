#include "editing/values/ValueText.h"

#include "XMLBuilder/forms/JoinedForm.h"
#include "XMLBuilder/reader/nodes/NodeText.h"
#include "XMLBuilder/writer/ToXMLBaseTypeVisitor.h"
#include "XMLBuilder/writer/sinks/DocumentSink.h"

#include <vector>

namespace Corvid::Editing {

namespace {

/// The texts of a value, whatever the elements around them.
class Texts final : public XMLBuilder::DocumentSink {
public:
    void startElement(const Name&, const Attribute*, std::size_t) override {}
    void endElement() override {}
    void text(Text text) override { texts.push_back(XMLBuilder::narrow(text)); }

    std::vector<std::string> texts;
};

struct TypeOf : Types::Visitors::Visitor {
#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    void visit(const Types::Class&) override { type = Types::Identifiers::Class; }
#include "host/types/ValueTypes.def"

    Types::Identifiers::Identifier type = Types::Identifiers::Unknown;
};

} // namespace

std::string valueText(const Types::SimpleDataType& value) {
    Texts parts;
    XMLBuilder::ToXMLBaseTypeVisitor writer(parts);
    value.accept(writer);
    if (parts.texts.size() < 2) {
        return parts.texts.empty() ? "" : parts.texts.front();
    }
    TypeOf visitor;
    value.accept(visitor);
    return XMLBuilder::joinedFormOf(visitor.type)->join(std::move(parts.texts));
}

} // namespace Corvid::Editing
