#pragma once

#include "XMLBuilder/format/As.h"
#include "XMLBuilder/reader/strict/ValueCheck.h"
#include "XMLBuilder/reader/values/ValueInput.h"
#include "XMLBuilder/schema/TypeDescription.h"
#include "XMLBuilder/writer/sinks/DocumentSink.h"
#include "host/types/Types.h"

namespace Corvid::XMLBuilder::ValueForms {

/// The text itself, white space at its ends included.
struct Text {
    static constexpr bool fitsAttributes = false;

    static void write(DocumentSink& to, const Types::UTF16String& value);
    static void write(DocumentSink& to, const Types::ISO7String& value);

    static ParsedValue parse(ValueInput& from, As<Types::UTF16String>);
    static ParsedValue parse(ValueInput& from, As<Types::ISO7String>);

    static bool check(ValueCheck& of, As<Types::UTF16String>) { return of.textOnly(of.node()); }
    /// A code unit of the narrow text has 8 bits. U+FFFD replaces one that XML can't hold.
    static bool check(ValueCheck& of, As<Types::ISO7String>);

    static SimpleType describe(As<Types::UTF16String>) { return {u"xs:string", {}}; }
    static SimpleType describe(As<Types::ISO7String>) {
        return {u"xs:string", {{u"xs:pattern", u"[\\t\\n\\r -\u00FF\uFFFD]*"}}};
    }
};

} // namespace Corvid::XMLBuilder::ValueForms
