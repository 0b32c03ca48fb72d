#pragma once

#include "Corvid_Inspection/Export.h"
#include "host/types/IdentifierTypes.h"

#include <string>
#include <vector>

namespace Corvid::Inspection {

/// A set of descriptive metadata: what people, not machines, say of a clip.
struct SchemeSet {
    /// A property and its value.
    struct Field {
        Types::UniversalLabel property;
        std::string name;  ///< of the property, in the dictionary
        std::string value; ///< in words; of an enumeration the name in the registers
    };
    std::string scheme; ///< "AS-11"; empty for one without a short name
    std::string className;
    std::vector<Field> fields; ///< in the order of documents
};

/// The values of a scheme that editors want to know first: a line of the report.
struct SchemeLine {
    std::string scheme;
    std::vector<std::string> phrases;
};

/// A line for each scheme, in the order of the sets. Of several values of a property the first one
/// counts.
CORVID_INSPECTION_EXPORT std::vector<SchemeLine> schemeLines(const std::vector<SchemeSet>& sets);

} // namespace Corvid::Inspection
