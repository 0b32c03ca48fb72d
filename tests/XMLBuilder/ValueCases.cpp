#include "tests/XMLBuilder/ValueCases.h"

#include <utility>

namespace Corvid::Testing {

std::string dotted(int bytes, const char* one) {
    std::string text = one;
    for (int i = 1; i != bytes; ++i) {
        text += std::string(".") + one;
    }
    return text;
}

namespace {

using Case = ValueCase;

Case inProperty(const std::string& name, Texts allowed, Texts refused) {
    return {"<e:" + name + ">", "</e:" + name + ">", std::move(allowed), std::move(refused)};
}

/// A number between two bounds: those and the numbers beside them, then its forms.
Case inNumber(Case number, const char* lowest, const char* highest, const char* below,
              const char* above) {
    number.allowed = {lowest, highest, "0", "+1", "-0", " 1", " 1 ", "1 \t\n", "007", "+0"};
    number.refused = {below,
                      above,
                      "",
                      " ",
                      "+",
                      "1 1",
                      "1.0",
                      "1e0",
                      "0x1",
                      "one",
                      "INF",
                      "true",
                      "--1",
                      "99999999999999999999999999",
                      "5.",
                      ".5",
                      "1,0",
                      "+-1",
                      "- 1",
                      "1-",
                      "1e3",
                      "\xD9\xA3",
                      "\xC2\xA0"
                      "1",
                      "&#xA0;1"};
    return number;
}

Case integer(const char* type, const char* lowest, const char* highest, const char* below,
             const char* above) {
    return inNumber(inProperty(type, {}, {}), lowest, highest, below, above);
}

Case inByte(Case number) { return inNumber(std::move(number), "0", "255", "-1", "256"); }
Case inTwoBytes(Case number) { return inNumber(std::move(number), "0", "65535", "-1", "65536"); }
Case inFourBytes(Case number) {
    return inNumber(std::move(number), "0", "4294967295", "-1", "4294967296");
}
Case inSignedFourBytes(Case number) {
    return inNumber(std::move(number), "-2147483648", "2147483647", "-2147483649", "2147483648");
}
Case inBytes(Case bytes) {
    bytes.allowed = {"", "00", "ff", "FF", "aB01", " 0a\n"};
    bytes.refused = {"0",
                     "0a1",
                     "0g",
                     "0a 0b",
                     "0a\t0b",
                     "0a.0b",
                     "0x0a",
                     "\xEF\xBC\x90"
                     "0"};
    return bytes;
}

Case inIdentifier(Case identifier, int bytes) {
    const std::string good = dotted(bytes);
    identifier.allowed = {good, dotted(bytes, "FF"), dotted(bytes, "fF"), " " + good + "\n"};
    identifier.refused = {"",
                          dotted(bytes - 1),
                          dotted(bytes + 1),
                          good + ".",
                          "." + good,
                          good.substr(1),
                          good + "0",
                          dotted(bytes, "0g"),
                          dotted(bytes, " 0a"),
                          "urn:uuid:" + good,
                          "{" + good + "}",
                          "0a0a0a0a-0a0a-0a0a-0a0a-0a0a0a0a0a0a",
                          std::string(static_cast<std::size_t>(2 * bytes), 'a')};
    return identifier;
}

Case identifier(const char* type, int bytes) {
    return inIdentifier(inProperty(type, {}, {}), bytes);
}

/// The place of one part of a compound value, in which all others are zero.
Case inPart(const std::string& type, const Texts& parts, const std::string& part,
            const std::string& prefix = "types:", const std::string& wrapper = "") {
    Case c{"<e:" + type + ">", "</e:" + type + ">", {}, {}};
    std::string close;
    if (!wrapper.empty()) {
        c.before += "<" + wrapper + ">";
        c.after = "</" + wrapper + ">" + c.after;
    }
    bool isBefore = true;
    std::string behind;
    for (const auto& each : parts) {
        const std::string open = "<" + prefix + each + ">", end = "</" + prefix + each + ">";
        if (each == part) {
            c.before += open;
            behind = end;
            isBefore = false;
        } else {
            (isBefore ? c.before : behind) += open + "00" + end;
        }
    }
    c.after = behind + c.after;
    return c;
}

Case inRational(const char* part) { return inPart("Rational", {"Numerator", "Denominator"}, part); }
Case inTimestamp(const char* part) {
    return inPart("Timestamp", {"Year", "Month", "Day", "Hour", "Minute", "Second", "mSec4"}, part);
}
Case inProductVersion(const char* part) {
    return inPart("ProductVersion", {"Major", "Minor", "Patch", "Build", "Release"}, part);
}
Case inPictureComponent(const char* part) {
    return inPart("J2KPictureComponent", {"Ssizi", "XRSizi", "YRSizi"}, part,
                  "s422mTypes:", "s422mTypes:J2KPictureComponent");
}
Case inCodingStyle(const char* part) {
    return inPart("J2KCodingStyleDefault", {"Scod", "SGcod", "Spcod"}, part,
                  "s422mTypes:", "s422mTypes:J2KCodingStyleDefault");
}
Case inQuantisation(const char* part) {
    return inPart("J2KQuantisationDefault", {"Sqcd", "SPgcd"}, part,
                  "s422mTypes:", "s422mTypes:J2KQuantisationDefault");
}

const std::string component =
    "<types:RGBAComponent><types:Code>0</types:Code><types:Depth>0</types:Depth>"
    "</types:RGBAComponent>";

Case inComponent(const char* part) {
    Case c = inPart("RGBALayout", {"Code", "Depth"}, part, "types:", "types:RGBAComponent");
    c.after.insert(c.after.find("</e:"), component + component + component + component);
    return c;
}

} // namespace

std::vector<Case> valueCases() {
    return {
        integer("Int8", "-128", "127", "-129", "128"),
        integer("Int16", "-32768", "32767", "-32769", "32768"),
        inSignedFourBytes(inProperty("Int32", {}, {})),
        integer("Int64", "-9223372036854775808", "9223372036854775807", "-9223372036854775809",
                "9223372036854775808"),
        inByte(inProperty("UInt8", {}, {})),
        inTwoBytes(inProperty("UInt16", {}, {})),
        inFourBytes(inProperty("UInt32", {}, {})),
        integer("UInt64", "0", "18446744073709551615", "-1", "18446744073709551616"),
        integer("Position", "-9223372036854775808", "9223372036854775807", "-9223372036854775809",
                "9223372036854775808"),
        integer("Length", "-9223372036854775808", "9223372036854775807", "-9223372036854775809",
                "9223372036854775808"),
        inByte(inProperty("Orientation", {}, {})),
        inByte(inProperty("SignalStandard", {}, {})),
        inTwoBytes(inProperty("VersionType", {}, {})),
        inByte({"<e:UInt8Batch><e:Element>", "</e:Element></e:UInt8Batch>", {}, {}}),
        // The reader that guesses takes a 0 with a blank for true.
        inProperty("Boolean", {"0", "1"},
                   {"", " ", " 0", "1 ", "2", "00", "01", "+1", "+0", "-0", "-1", "true", "false",
                    "TRUE", "true ", "yes"}),
        inBytes(inProperty("DataStream", {}, {})),
        inBytes(inProperty("Unknown", {}, {})),
        inProperty("UTF16String", {"", " ", " any\n text ", "0", "&lt;&amp;", "\xC3\xA9"},
                   {"<types:Code>0</types:Code>"}),
        inProperty(
            "ISO7String",
            {"", " ", " any\n text ", "0", "~", "\x7F", "\xC2\x80", "\xC3\xBF", "\xEF\xBF\xBD"},
            {"<types:Code>0</types:Code>", "\xC4\x80", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"}),
        inProperty("UTF16", {"", " ", "\n", "A", "\xE2\x82\xAC", "\xEF\xBF\xBD"},
                   {"AB", "A ", "\xF0\x9F\x98\x80"}),
        identifier("UUID", 16),
        identifier("UniversalLabel", 16),
        identifier("UMID32", 32),
        identifier("UMID64", 64),
        identifier("LocalTag", 2),
        // A clip's identifier may be the basic one.
        inProperty("ExtendedClipID", {dotted(32), dotted(64), dotted(32, "FF")},
                   {"", dotted(31), dotted(33), dotted(63), dotted(65)}),
        inSignedFourBytes(inRational("Numerator")),
        inSignedFourBytes(inRational("Denominator")),
        inTwoBytes(inTimestamp("Year")),
        inByte(inTimestamp("Month")),
        inByte(inTimestamp("Day")),
        inByte(inTimestamp("Hour")),
        inByte(inTimestamp("Minute")),
        inByte(inTimestamp("Second")),
        inByte(inTimestamp("mSec4")),
        inTwoBytes(inProductVersion("Major")),
        inTwoBytes(inProductVersion("Minor")),
        inTwoBytes(inProductVersion("Patch")),
        inTwoBytes(inProductVersion("Build")),
        inTwoBytes(inProductVersion("Release")),
        inByte(inComponent("Code")),
        inByte(inComponent("Depth")),
        {"<e:RGBALayout>" + component + component + component + component,
         "</e:RGBALayout>",
         {component},
         {"", component + component}},
        inByte(inPictureComponent("Ssizi")),
        inByte(inPictureComponent("XRSizi")),
        inByte(inPictureComponent("YRSizi")),
        inByte(inCodingStyle("Scod")),
        inFourBytes(inCodingStyle("SGcod")),
        inBytes(inCodingStyle("Spcod")),
        inByte(inQuantisation("Sqcd")),
        inBytes(inQuantisation("SPgcd")),
        inIdentifier({"<e:StrongReference><s377m:Dangling_REF types:TargetInstance=\"",
                      "\"/></e:StrongReference>",
                      {},
                      {}},
                     16),
        inIdentifier({"<groups:ExtensionElements><groups:DarkElement groups:StaticLocalTag=\"",
                      "\">00</groups:DarkElement></groups:ExtensionElements>",
                      {},
                      {}},
                     2),
        inIdentifier({"<groups:ExtensionElements><groups:DarkElement groups:UniversalLabel=\"",
                      "\">00</groups:DarkElement></groups:ExtensionElements>",
                      {},
                      {}},
                     16),
        inBytes({"<groups:ExtensionElements><groups:DarkElement groups:StaticLocalTag=\"7f.f0\">",
                 "</groups:DarkElement></groups:ExtensionElements>",
                 {},
                 {}}),
    };
}

} // namespace Corvid::Testing
