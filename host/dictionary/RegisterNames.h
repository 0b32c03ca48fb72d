#pragma once

#include "host/dictionary/Registers.h"

namespace Corvid::MetaMetadata::Registers {

/// What the registers, or those who use it, call a label, the label of a property, or the key of a
/// set or pack, in words; empty where nobody is known to. The version byte takes no part.
CORVID_EXPORT std::string_view nameOf(const Types::UniversalLabel& label) noexcept;

/// The enumeration that the numbers of a property are from, be they the property itself or the
/// items of a list; nothing where they are just numbers.
CORVID_EXPORT std::optional<RegisteredType> enumerationOf(
    const Types::UniversalLabel& property) noexcept;

/// The symbol of the member of an enumeration that has a number; empty where none has.
CORVID_EXPORT std::string_view memberOf(const RegisteredType& enumeration,
                                        Types::u64 number) noexcept;

} // namespace Corvid::MetaMetadata::Registers
