#pragma once

#include "XMLBuilder/format/As.h"
#include "XMLBuilder/format/NumberInput.h"
#include "XMLBuilder/forms/NumberValue.h"
#include "XMLBuilder/reader/strict/ValueCheck.h"
#include "XMLBuilder/reader/values/ValueInput.h"
#include "XMLBuilder/schema/TypeDescription.h"
#include "host/types/Types.h"

#include <string_view>

namespace Corvid::XMLBuilder::ValueForms {

/// A whole number, in decimal.
struct Integer {
    static constexpr bool fitsAttributes = false;

    template <class T> using NumberOf = std::decay_t<decltype(std::declval<const T&>().value())>;

    template <class T> static void write(DocumentSink& to, const T& value) {
        writeNumber(to, +value.value());
    }

    /// Up to 32 bits are read as a number of 32 bits, of which the low ones are kept.
    template <class T> static ParsedValue parse(ValueInput& from, As<T>) {
        using Number = NumberOf<T>;
        using Small = std::conditional_t<std::is_signed_v<Number>, int, Types::u32>;
        using Read = std::conditional_t<sizeof(Number) <= sizeof(Small), Small, Number>;
        return give(T(static_cast<Number>(readNumber<Read>(from.text()))));
    }
    /// Any text but "0" is true.
    static ParsedValue parse(ValueInput& from, As<Types::Boolean>) {
        return give(Types::Boolean(from.text() != std::u16string_view(u"0")));
    }

    template <class T> static bool check(ValueCheck& of, As<T>) {
        return of.number(of.node(), IntegerRange::of<NumberOf<T>>());
    }
    /// Nothing but these digits: the parser takes any text but "0" for true.
    static bool check(ValueCheck& of, As<Types::Boolean>) {
        return of.text(
            of.node(), [](std::u16string_view text) { return text == u"0" || text == u"1"; },
            "0 or 1");
    }

    template <class T> static SimpleType describe(As<T>) {
        using Number = NumberOf<T>;
        return isNamedByItsNumber<T> ? describeNumber<Number>()
                                     : SimpleType{nameOfNumber<Number>(), {}};
    }
    static SimpleType describe(As<Types::Boolean>) {
        return {u"xs:string", {{u"xs:pattern", u"[01]"}}};
    }

private:
    template <class T, class... Others>
    static constexpr bool isOneOf = (std::is_same_v<T, Others> || ...);
    /// Whether the type is the one in whose range the others have theirs.
    template <class T>
    static constexpr bool isNamedByItsNumber =
        isOneOf<T, Types::Int8, Types::Int16, Types::Int32, Types::Int64, Types::UInt8,
                Types::UInt16, Types::UInt32, Types::UInt64>;
};

} // namespace Corvid::XMLBuilder::ValueForms
