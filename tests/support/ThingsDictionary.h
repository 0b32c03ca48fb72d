#pragma once

#include "host/types/Identifiers.h"

#include <cstdio>
#include <string>

namespace Corvid::Testing {

/// A dictionary with a set "Thing" that has a property of every type that a dictionary can name,
/// with the name of the type, and collections of it, named for example UInt8Array and UInt8Batch.
inline std::string thingsDictionary() {
    std::string text = "namespace t urn:test\nnamespace e urn:test:elements\n"
                       "namespace s377m urn:SMPTE:S377M\n"
                       "set t:Thing 06.0e.2b.34.02.53.01.01.0e.7f.01.00.00.00.00.00 "
                       "s377m:InterchangeObject concrete\n";
    int number = 0;
    const auto add = [&](const std::string& name, const std::string& type) {
        char label[80];
        std::snprintf(label, sizeof label, "06.0e.2b.34.01.01.01.01.0e.7f.01.00.00.00.%02x.00",
                      ++number);
        text += "property e:" + name + " " + label + " - " + type + " optional -\n";
    };
#define CORVID_VALUE_TYPE(Class, Id, Form)                                                         \
    if (Id != Types::Identifiers::Array && Id != Types::Identifiers::Batch &&                      \
        Id != Types::Identifiers::DataValue) {                                                     \
        add(#Class, #Class);                                                                       \
        add(#Class "Array", "Array(" #Class ")");                                                  \
        add(#Class "Batch", "Batch(" #Class ")");                                                  \
    }
#include "host/types/ValueTypes.def"
    add("ExtendedClipID", "UMID64");
    text += "set t:Other 06.0e.2b.34.02.53.01.01.0e.7f.02.00.00.00.00.00 "
            "s377m:InterchangeObject concrete\n";
    add("OtherNumber", "UInt8");
    return text;
}

} // namespace Corvid::Testing
