#pragma once

#include "XMLBuilder/format/As.h"
#include "XMLBuilder/format/HexBytes.h"
#include "XMLBuilder/reader/values/ValueInput.h"
#include "XMLBuilder/schema/TypeDescription.h"
#include "XMLBuilder/writer/sinks/DocumentSink.h"
#include "host/types/Types.h"

namespace Corvid::XMLBuilder {

class ValueCheck;

namespace ValueForms {

/// The identifier of a reference's target, as the value of an attribute, too. It is read from links
/// and never as a value.
struct ReferenceText {
    static constexpr bool fitsAttributes = true;

    static void write(DocumentSink& to, const Types::Reference& value) {
        to.text(DottedText(value.uuid()));
    }
    static auto attribute(const Types::Reference& value) noexcept {
        return DottedText(value.uuid());
    }

    template <class T> static ParsedValue parse(ValueInput&, As<T>) { return {}; }
    template <class T> static bool check(ValueCheck&, As<T>) { return true; }
    template <class T> static NoType describe(As<T>) { return {}; }
};

} // namespace ValueForms

} // namespace Corvid::XMLBuilder
