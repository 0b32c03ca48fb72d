#pragma once

#include "host/dictionary/DictionaryText.h"
#include "host/dictionary/Tables.h"

namespace Corvid::MetaMetadata {

/// Compiles texts, and the dictionary that they extend.
/// @param base  null for none.
/// @throws InvalidDictionary  a text breaks a rule of the format or contradicts another definition.
Tables load(const TablesView* base, const Rows<DictionaryText>& texts);

} // namespace Corvid::MetaMetadata
