#pragma once

#include "inspection/Glossary.h"

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace Corvid::Inspection {
class DefinitionUses;
}

namespace Corvid::Tool {

/// All that is known of an entry, with the keys that docs/dictionary-command.md names. Values are
/// texts, numbers and truth values, lists of texts, objects of texts, and lists of objects, in
/// which null is where nothing is known.
/// @param uses  of the dictionary that the entry's glossary was made of.
nlohmann::ordered_json explain(const Inspection::Glossary::Entry& entry,
                               const Inspection::DefinitionUses& uses);

/// The same for people: what has one value on a line of its own, lists of objects as tables.
/// @param colours  whether headings are coloured.
std::string explanationText(const nlohmann::ordered_json& explanation, bool colours);

} // namespace Corvid::Tool
