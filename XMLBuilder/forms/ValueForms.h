#pragma once

#include "XMLBuilder/forms/Bytes.h"
#include "XMLBuilder/forms/CodeUnit.h"
#include "XMLBuilder/forms/Collection.h"
#include "XMLBuilder/forms/Compound.h"
#include "XMLBuilder/forms/IdentifierText.h"
#include "XMLBuilder/forms/Integer.h"
#include "XMLBuilder/forms/PackedVersion.h"
#include "XMLBuilder/forms/ReferenceText.h"
#include "XMLBuilder/forms/Text.h"

/// The forms that values have in XML, as host/types/ValueTypes.def names them for each type. Each
/// has the same operations, with an overload for a type that is unlike the others:
///
///   write(sink, value)  into the element that is open
///   attribute(value)    its text as that of an attribute, where fitsAttributes
///   parse(input, As)    leniently, as the library's contract has it; of what check() lets pass
///                       also strictly
///   check(check, As)    whether a document of people has it right
///   describe(As)        the same for XML Schema
namespace Corvid::XMLBuilder::ValueForms {}
