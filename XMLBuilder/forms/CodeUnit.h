#pragma once

#include "XMLBuilder/format/As.h"
#include "XMLBuilder/format/NumberInput.h"
#include "XMLBuilder/reader/strict/ValueCheck.h"
#include "XMLBuilder/reader/values/ValueInput.h"
#include "XMLBuilder/schema/TypeDescription.h"
#include "XMLBuilder/writer/sinks/DocumentSink.h"
#include "host/types/Types.h"

namespace Corvid::XMLBuilder::ValueForms {

/// One code unit of text.
struct CodeUnit {
    static constexpr bool fitsAttributes = false;

    static void write(DocumentSink& to, const Types::UTF16& value) {
        const char16_t text[] = {static_cast<char16_t>(value.value()), 0};
        to.text(text);
    }

    /// The first code unit of the first word.
    static ParsedValue parse(ValueInput& from, As<Types::UTF16>) {
        return give(Types::UTF16(static_cast<Types::u16>(*skipStreamSpace(from.wholeText()))));
    }

    static bool check(ValueCheck& of, As<Types::UTF16>) {
        return of.text(
            of.node(), [](std::u16string_view text) { return text.size() <= 1; },
            "at most one character of 16 bits", false);
    }

    /// A character beyond U+FFFF has two code units, but in some validators a length of 1.
    static SimpleType describe(As<Types::UTF16>) {
        return {u"xs:string",
                {{u"xs:maxLength", u"1"}, {u"xs:pattern", u"[^\U00010000-\U0010FFFF]?"}}};
    }
};

} // namespace Corvid::XMLBuilder::ValueForms
