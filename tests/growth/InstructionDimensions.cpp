#include "tests/growth/Dimension.h"
#include "tests/growth/DocumentText.h"

#include <cstdio>

namespace Corvid::Testing {

namespace {

const std::string trackClass = "06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.3b.00";
const std::string nameLabel = "06.0e.2b.34.01.01.01.02.01.07.01.02.01.00.00.00";

std::string twoBytes(std::size_t number) {
    char text[8];
    std::snprintf(text, sizeof text, "%02zx.%02zx", number >> 8 & 0xFF, number & 0xFF);
    return text;
}

/// A document with so many processing instructions, and with tracks that they may be about.
template <class Instruction>
std::string instructions(std::size_t n, std::size_t trackCount, Instruction instruction) {
    return DocumentParts{
        "<?corvid format=\"1\"?>\n" +
            repeated(n, [&](std::size_t i) { return "<?corvid " + instruction(i) + "?>\n"; }),
        {},
        {},
        repeated(
            trackCount,
            [](std::size_t i) { return trackText(i + 1, "<rp210:TrackName>a</rp210:TrackName>"); })}
        .text();
}

std::string setOf(std::size_t i) { return "set=\"" + instanceText(i + 1) + "\""; }
std::string nameOf(std::size_t i) { return setOf(i) + " property=\"" + nameLabel + "\""; }
std::string bytesOf(std::size_t i) { return "bytes " + nameOf(i) + " hex=\"00610000\""; }
std::string formOf(std::size_t i) { return "form " + nameOf(i) + " octets=\"8\""; }
std::string keyOf(std::size_t i) {
    return "key " + setOf(i) + " key=\"06.0e.2b.34.02.53.01.07.0d.01.01.01.01.01.3b.00\"";
}
std::string copiesOf(std::size_t i) { return "copies " + setOf(i) + " count=\"2\""; }

std::string bytesOfSets(std::size_t n) { return instructions(n, n, bytesOf); }
std::string bytesOfNoSet(std::size_t n) {
    return instructions(n, 1, [](std::size_t i) { return bytesOf(i + 100000); });
}
std::string overruledBytes(std::size_t n) {
    return instructions(n, n,
                        [](std::size_t i) { return "bytes " + nameOf(i) + " hex=\"00620000\""; });
}
std::string bytesOfOneSet(std::size_t n) {
    return instructions(
        n, 1, [](std::size_t i) { return bytesOf(0) + " nth=\"" + std::to_string(i) + "\""; });
}
std::string bytesOfCopies(std::size_t n) {
    return instructions(
        n, 1, [](std::size_t i) { return bytesOf(0) + " copy=\"" + std::to_string(i) + "\""; });
}
std::string labelsOfOneSet(std::size_t n) {
    return instructions(n, 1, [](std::size_t i) {
        return "bytes " + setOf(0) + " property=\"06.0e.2b.34.01.01.01.01.0e.7d.01.00.00.00." +
               twoBytes(i) + "\" hex=\"00\"";
    });
}
std::string formsOfSets(std::size_t n) { return instructions(n, n, formOf); }
std::string keysOfSets(std::size_t n) { return instructions(n, n, keyOf); }
std::string keysOfClasses(std::size_t n) {
    return instructions(n, 1, [](std::size_t i) {
        const std::string end = "0e.7d.00.00.00.00." + twoBytes(i);
        return "key class=\"06.0e.2b.34.02.53.01.01." + end + "\" key=\"06.0e.2b.34.02.53.01.02." +
               end + "\"";
    });
}
std::string keysOfCopies(std::size_t n) {
    return instructions(n, n, [](std::size_t i) {
        return "key class=\"" + trackClass + "\" copy=\"" + std::to_string(i) +
               "\" key=\"06.0e.2b.34.02.53.01.07.0d.01.01.01.01.01.3b.00\"";
    });
}
std::string copiesOfSets(std::size_t n) { return instructions(n, n, copiesOf); }
std::string copiesOfNoSet(std::size_t n) {
    return instructions(n, 1, [](std::size_t i) { return copiesOf(i + 100000); });
}
std::string unidentifiedClasses(std::size_t n) {
    return instructions(n, 1, [](std::size_t i) {
        return "unidentified class=\"06.0e.2b.34.02.53.01.01.0e.7d.00.00.00.00." + twoBytes(i) +
               "\" count=\"1\"";
    });
}
std::string primerInstructions(std::size_t n) {
    return instructions(n, 1, [](std::size_t i) {
        return "primer tag=\"" + twoBytes(0x8000 + i) +
               "\" label=\"06.0e.2b.34.01.01.01.01.0e.7d.01.00.00.00." + twoBytes(i) + "\"";
    });
}
std::string primerInstructionsOfOneLabel(std::size_t n) {
    return instructions(n, 1, [](std::size_t i) {
        return "primer tag=\"" + twoBytes(0x8000 + i) + "\" label=\"" + nameLabel + "\"";
    });
}
std::string hexadecimalDigits(std::size_t n) {
    return instructions(1, 1, [n](std::size_t) {
        return "bytes " + nameOf(0) + " hex=\"" + repeated(n, [](std::size_t) { return "00"; }) +
               "\"";
    });
}

} // namespace

std::vector<Dimension> instructionDimensions() {
    constexpr auto xml = InputKind::xml;
    return {
        {"instructions: bytes of sets", xml, 64, bytesOfSets},
        {"instructions: bytes of sets that are missing", xml, 256, bytesOfNoSet},
        {"instructions: bytes that edits overrule", xml, 64, overruledBytes},
        {"instructions: bytes of one property", xml, 256, bytesOfOneSet},
        {"instructions: bytes of copies of a set", xml, 256, bytesOfCopies},
        {"instructions: bytes of properties of a set", xml, 256, labelsOfOneSet},
        {"instructions: hexadecimal digits", xml, 4096, hexadecimalDigits, 65000},
        {"instructions: forms of sets", xml, 64, formsOfSets},
        {"instructions: keys of sets", xml, 64, keysOfSets},
        {"instructions: keys of classes", xml, 256, keysOfClasses},
        {"instructions: keys of copies of a class", xml, 64, keysOfCopies},
        {"instructions: copies of sets", xml, 64, copiesOfSets},
        {"instructions: copies of sets that are missing", xml, 256, copiesOfNoSet},
        {"instructions: classes without InstanceUID", xml, 256, unidentifiedClasses},
        {"instructions: primer entries", xml, 256, primerInstructions},
        {"instructions: primer entries with one label", xml, 256, primerInstructionsOfOneLabel},
    };
}

} // namespace Corvid::Testing
