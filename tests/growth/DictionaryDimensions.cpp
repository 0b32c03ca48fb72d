#include "tests/growth/Dimension.h"
#include "tests/growth/DocumentText.h"

#include <cstdio>

namespace Corvid::Testing {

namespace {

const std::string namespaces = "namespace s377m urn:SMPTE:S377M\nnamespace g urn:test:growth\n";

std::string setRow(std::size_t number, const std::string& parent = "s377m:InterchangeObject") {
    char key[64];
    std::snprintf(key, sizeof key, "06.0e.2b.34.02.53.01.01.0e.7d.00.00.00.%02zx.%02zx.00",
                  number >> 8 & 0xFF, number & 0xFF);
    return "set " + numbered("g:Set", number) + " " + key + " " + parent + " concrete\n";
}

std::string propertyRow(std::size_t number, const std::string& index = "-",
                        const std::string& name = "g:Property",
                        const std::string& type = "UInt32") {
    char label[64];
    std::snprintf(label, sizeof label, "06.0e.2b.34.01.01.01.01.0e.7d.00.00.00.%02zx.%02zx.00",
                  number >> 8 & 0xFF, number & 0xFF);
    return "property " + name + std::to_string(number) + " " + label + " - " + type + " optional " +
           index + "\n";
}

std::string sets(std::size_t n) {
    return namespaces + repeated(n, [](std::size_t i) { return setRow(i); });
}

std::string propertiesOfASet(std::size_t n) {
    return namespaces + setRow(0) + repeated(n, [](std::size_t i) { return propertyRow(i); });
}

std::string setsWithAProperty(std::size_t n) {
    return namespaces + repeated(n, [](std::size_t i) { return setRow(i) + propertyRow(i); });
}

/// As many sets as properties, which each of them inherits.
std::string setsTimesProperties(std::size_t n) {
    return propertiesOfASet(n) + repeated(n, [](std::size_t i) { return setRow(i + 1, "g:Set0"); });
}

std::string usesOfAProperty(std::size_t n) {
    return namespaces + setRow(0) + propertyRow(0) +
           repeated(n, [](std::size_t i) { return setRow(i + 1) + "use g:Property0 optional\n"; });
}

std::string ancestors(std::size_t n) {
    return namespaces + repeated(n, [](std::size_t i) {
               return (i == 0 ? setRow(0) : setRow(i, numbered("g:Set", i - 1))) + propertyRow(i);
           });
}

std::string propertiesOfAKnownSet(std::size_t n) {
    return namespaces + "extend s377m:TimelineTrack\n" +
           repeated(n, [](std::size_t i) { return propertyRow(i); });
}

std::string propertiesOfAllSets(std::size_t n) {
    return namespaces + "extend s377m:InterchangeObject\n" +
           repeated(n, [](std::size_t i) { return propertyRow(i); });
}

std::string extensions(std::size_t n) {
    return namespaces + repeated(n, [](std::size_t i) {
               return "extend s377m:TimelineTrack\n" + propertyRow(i);
           });
}

std::string namespaceRows(std::size_t n) {
    return namespaces + repeated(n, [](std::size_t i) {
               return "namespace " + numbered("p", i) + " " + numbered("urn:test:", i) + "\n";
           });
}

std::string namespacesInUse(std::size_t n) {
    return namespaceRows(n) + setRow(0) + repeated(n, [](std::size_t i) {
               return propertyRow(i, "-", numbered("p", i) + ":Property");
           });
}

/// Numbers that one place of a hash table with as many places as standard libraries like has.
std::string collidingIndexes(std::size_t n) {
    constexpr std::size_t places = 10273;
    return namespaces + setRow(0) + repeated(n, [](std::size_t i) {
               return propertyRow(i, std::to_string((i + 100) * places));
           });
}

std::string typesOfProperties(std::size_t n) {
    return namespaces + setRow(0) + repeated(n, [](std::size_t i) {
               return propertyRow(i, "-", "g:Property", "Batch(StrongReference)");
           });
}

std::string comments(std::size_t n) {
    return namespaces + repeated(n, [](std::size_t) { return std::string("# comment\n"); });
}

std::string nameLength(std::size_t n) {
    return namespaces + setRow(0) + propertyRow(0, "-", "g:" + std::string(n, 'P'));
}

} // namespace

std::vector<Dimension> dictionaryDimensions() {
    constexpr auto dictionary = InputKind::dictionary;
    return {
        {"sets of a dictionary", dictionary, 64, sets},
        {"properties of one set", dictionary, 64, propertiesOfASet},
        {"sets with a property", dictionary, 64, setsWithAProperty},
        {"sets times inherited properties", dictionary, 32, setsTimesProperties},
        {"uses of a property", dictionary, 64, usesOfAProperty},
        {"ancestors of a set", dictionary, 15, ancestors, 60},
        {"properties of a known set", dictionary, 64, propertiesOfAKnownSet},
        {"properties that all sets inherit", dictionary, 32, propertiesOfAllSets},
        {"extensions of a known set", dictionary, 64, extensions},
        {"namespaces that nothing uses", dictionary, 64, namespaceRows},
        {"namespaces of properties", dictionary, 32, namespacesInUse},
        {"SchemaIndexes that collide", dictionary, 64, collidingIndexes},
        {"properties that refer to sets", dictionary, 64, typesOfProperties},
        {"comments of a dictionary", dictionary, 512, comments},
        {"characters of a property's name", dictionary, 64, nameLength},
    };
}

} // namespace Corvid::Testing
