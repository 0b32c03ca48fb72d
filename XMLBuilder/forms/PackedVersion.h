#pragma once

#include "XMLBuilder/format/As.h"
#include "XMLBuilder/format/NumberInput.h"
#include "XMLBuilder/forms/NumberValue.h"
#include "XMLBuilder/reader/strict/ValueCheck.h"
#include "XMLBuilder/reader/values/ValueInput.h"
#include "host/types/Types.h"

namespace Corvid::XMLBuilder::ValueForms {

/// Two bytes as one decimal number.
struct PackedVersion {
    static constexpr bool fitsAttributes = false;

    static void write(DocumentSink& to, const Types::VersionType& value) {
        writeNumber(to, value.major() * 256 + value.minor());
    }

    static ParsedValue parse(ValueInput& from, As<Types::VersionType>) {
        const auto version = readNumber<Types::u32>(from.text());
        return give(Types::VersionType(static_cast<Types::u8>(version >> 8),
                                       static_cast<Types::u8>(version)));
    }

    static bool check(ValueCheck& of, As<Types::VersionType>) {
        return of.number(of.node(), IntegerRange::of<Types::u16>());
    }

    static SimpleType describe(As<Types::VersionType>) { return {nameOfNumber<Types::u16>(), {}}; }
};

} // namespace Corvid::XMLBuilder::ValueForms
