#pragma once

#include "inspection/Summary.h"
#include "tools/corvid/terminal/WarningLog.h"

#include <string>
#include <vector>

namespace Corvid::Tool {

/// What the fields of a file are made of.
struct FieldSource {
    const std::string& file;
    const Inspection::Summary& summary;
    const WarningLog& warnings;
};

/// Something that is worked out from the metadata of a file: its title, the size of its pictures.
struct Field {
    const char* name;
    /// None where the metadata does not say it.
    std::vector<std::string> (*values)(const FieldSource& source);
};

/// The field with a name, or null.
const Field* findField(const std::string& name);

/// "@file @title ..."
std::string namesOfFields();

} // namespace Corvid::Tool
