#pragma once

#include "XMLBuilder/format/NumberText.h"
#include "XMLBuilder/schema/TypeDescription.h"
#include "XMLBuilder/writer/sinks/DocumentSink.h"

#include <limits>
#include <string>
#include <type_traits>

/// What forms that hold numbers have in common.
namespace Corvid::XMLBuilder {

template <class Number> void writeNumber(DocumentSink& to, Number number) {
    const DecimalText text(number);
    to.text({text.c_str(), text.size()});
}

/// The value type that is named like a number, in whose range the others have theirs.
template <class Number> std::u16string nameOfNumber() {
    return (std::is_signed_v<Number> ? u"Int" : u"UInt") +
           std::u16string(DecimalText(8 * sizeof(Number)).c_str());
}

/// That type: it restricts xs:integer and not xs:unsignedByte and the like, in which some
/// validators refuse a sign and white space.
template <class Number> SimpleType describeNumber() {
    using Limits = std::numeric_limits<Number>;
    return {u"xs:integer",
            {{u"xs:minInclusive", DecimalText(+Limits::min()).c_str()},
             {u"xs:maxInclusive", DecimalText(+Limits::max()).c_str()}}};
}

} // namespace Corvid::XMLBuilder
