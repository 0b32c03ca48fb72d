#include "XMLBuilder/reader/values/ValueParser.h"

#include "XMLBuilder/Errors.h"
#include "XMLBuilder/forms/ValueForms.h"
#include "XMLBuilder/reader/nodes/NodeText.h"
#include "host/base/Exceptions.h"
#include "host/types/Factories.h"

#include <string>

namespace Corvid::XMLBuilder {

namespace {

/// Whether an element carries no value. A character that is white space is none, as the library's
/// reader leaves it out.
bool isEmpty(const Reading& reading, Types::Identifiers::Identifier type,
             const DocumentNode& node) {
    if (node.kind == DocumentNode::Kind::attribute) {
        return false;
    }
    const bool isBlankCharacter = reading.strictness() != nullptr &&
                                  type == Types::Identifiers::UTF16 &&
                                  trimmed(Content(node).text()).empty();
    return node.firstChild == nullptr || isBlankCharacter;
}

ParsedValue parse(ValueInput input, Types::Identifiers::Identifier type) {
    switch (type) {
#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    case Id:                                                                                       \
        return ValueForms::Form::parse(input, As<Types::Class>{});
#include "host/types/ValueTypes.def"
    }
    return {};
}

} // namespace

ParsedValue parseValue(Reading& reading, Types::Identifiers::Identifier type,
                       const DocumentNode& node, EmptyParts empty) {
    if (isEmpty(reading, type, node)) {
        return empty == EmptyParts::values ? Types::Factories::fromBytes(type, {}) : ParsedValue();
    }
    auto value = parse(ValueInput(reading, node, empty), type);
    constexpr std::size_t greatest = Types::ByteRun::greatestSize;
    if (value && value->byteCount() > greatest) {
        throw Exceptions::LimitExceeded(narrow(node.name) + ": value of " +
                                            std::to_string(value->byteCount()) +
                                            " bytes, expected at most " + std::to_string(greatest) +
                                            ", which is what a property can hold",
                                        CORVID_ELEMENT_VISITOR_HERE);
    }
    return value;
}

} // namespace Corvid::XMLBuilder
