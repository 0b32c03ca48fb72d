#include "tests/growth/DocumentText.h"

#include <cstdio>

namespace Corvid::Testing {

std::string DocumentParts::text() const {
    return R"(<?xml version="1.0" encoding="UTF-8"?>)"
           "\n" +
           inFront +
           R"(<s377m:MetadataSets xmlns:rp210="urn:SMPTE:RP210" xmlns:s377m="urn:SMPTE:S377M")"
           R"( xmlns:types="urn:SMPTE:Types:MXF" xmlns:groups="urn:SMPTE:Groups:MXF")" +
           rootAttributes + ">\n<s377m:Preface rp210:InstanceUID=\"" + instanceText(0) +
           "\">\n<rp210:OperationalPattern>06.0e.2b.34.04.01.01.01.0d.01.02.01.01.01.01.00"
           "</rp210:OperationalPattern>\n" +
           inPreface + "</s377m:Preface>\n" + sets + "</s377m:MetadataSets>\n";
}

std::string instanceText(std::size_t number) {
    char text[48];
    std::snprintf(text, sizeof text, "7a.00.00.00.00.00.40.00.80.00.00.00.%02zx.%02zx.%02zx.%02zx",
                  number >> 24 & 0xFF, number >> 16 & 0xFF, number >> 8 & 0xFF, number & 0xFF);
    return text;
}

std::string trackText(std::size_t number, const std::string& content,
                      const std::string& attributes) {
    return "<s377m:TimelineTrack rp210:InstanceUID=\"" + instanceText(number) + "\"" + attributes +
           ">" + content + "</s377m:TimelineTrack>\n";
}

std::string numbered(const char* name, std::size_t number) { return name + std::to_string(number); }

} // namespace Corvid::Testing
