#pragma once

#include "XMLBuilder/json/JsonWriter.h"
#include "host/dictionary/RegisterNames.h"
#include "host/types/Types.h"

#include <optional>

namespace Corvid::XMLBuilder {

/// What values in JSON depend on beside themselves.
struct JsonValueManner {
    /// What the numbers are from, by the registers.
    std::optional<MetaMetadata::RegisteredType> enumeration;
    /// How many bytes are written of what is bytes, longer ones are cut and have their count.
    std::size_t mostBytes = static_cast<std::size_t>(-1);
};

/// Writes one value, whatever its type, in the form that it has in JSON.
class ToJsonValueVisitor final : public Types::Visitors::Visitor {
public:
    /// Both are borrowed.
    ToJsonValueVisitor(JsonWriter& to, const JsonValueManner& manner) : to_(to), manner_(manner) {}

#define CORVID_VALUE_TYPE(Class, Id, Form) void visit(const Types::Class& value) override;
#include "host/types/ValueTypes.def"

private:
    JsonWriter& to_;
    const JsonValueManner& manner_;
};

/// Writes bytes as members of the object that is begun: "hex": "0A0B".
/// @param most  JsonValueManner::mostBytes
void writeHex(JsonWriter& to, Types::ByteView bytes, std::size_t most);

/// Writes a label: {"label": "06.0e...", "name": "..."}; the name is null where nobody is known to
/// have given one.
void writeLabel(JsonWriter& to, const Types::UniversalLabel& label);

} // namespace Corvid::XMLBuilder
