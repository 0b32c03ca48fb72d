#pragma once

#include "XMLBuilder/format/As.h"
#include "XMLBuilder/reader/values/ValueInput.h"
#include "XMLBuilder/schema/TypeDescription.h"
#include "XMLBuilder/writer/sinks/DocumentSink.h"
#include "host/types/Types.h"

namespace Corvid::XMLBuilder {

class ValueCheck;

namespace ValueForms {

/// The items of a collection; as the value of a property each has an element of its own, in which
/// it is written and read.
struct Collection {
    static constexpr bool fitsAttributes = false;

    /// The items follow one another with nothing between them.
    static void write(DocumentSink& to, const Types::Collection& value);

    template <class T> static ParsedValue parse(ValueInput&, As<T>) { return {}; }
    template <class T> static bool check(ValueCheck&, As<T>) { return true; }
    template <class T> static NoType describe(As<T>) { return {}; }
};

} // namespace ValueForms

} // namespace Corvid::XMLBuilder
