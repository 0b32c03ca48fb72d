#pragma once

#include "XMLBuilder/format/As.h"
#include "XMLBuilder/reader/strict/ValueCheck.h"
#include "XMLBuilder/reader/values/ValueInput.h"
#include "XMLBuilder/schema/TypeDescription.h"
#include "XMLBuilder/writer/sinks/DocumentSink.h"
#include "host/types/Types.h"

namespace Corvid::XMLBuilder::ValueForms {

/// Bytes, in hexadecimal.
struct Bytes {
    static constexpr bool fitsAttributes = false;

    static void write(DocumentSink& to, const Types::DataType& value);

    static ParsedValue parse(ValueInput& from, As<Types::DataStream>);
    static ParsedValue parse(ValueInput& from, As<Types::Unknown>);
    /// Written, but read only where more is known of the property than its element.
    static ParsedValue parse(ValueInput& from, As<Types::DataValue>);

    template <class T> static bool check(ValueCheck& of, As<T>) { return of.bytes(of.node()); }

    template <class T> static SimpleType describe(As<T>) { return {u"xs:hexBinary", {}}; }
};

} // namespace Corvid::XMLBuilder::ValueForms
