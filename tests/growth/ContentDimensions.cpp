#include "tests/growth/Dimension.h"
#include "tests/growth/DocumentText.h"

#include <cstdio>

namespace Corvid::Testing {

namespace {

std::string sets(const std::string& text) { return DocumentParts{{}, {}, {}, text}.text(); }

/// One track whose name is made of those pieces.
template <class Piece> std::string nameOfPieces(std::size_t n, Piece piece) {
    return sets(trackText(1, "<rp210:TrackName>" + repeated(n, piece) + "</rp210:TrackName>"));
}

std::string characterReferences(std::size_t n) {
    return nameOfPieces(n, [](std::size_t) { return "&#65;"; });
}
std::string entityReferences(std::size_t n) {
    return nameOfPieces(n, [](std::size_t) { return "&amp;"; });
}
std::string cdataPieces(std::size_t n) {
    return nameOfPieces(n, [](std::size_t) { return "<![CDATA[ab]]>"; });
}
std::string commentsInAValue(std::size_t n) {
    return nameOfPieces(n, [](std::size_t) { return "ab<!-- -->"; });
}
std::string instructionsInAValue(std::size_t n) {
    return nameOfPieces(n, [](std::size_t) { return "ab<?x?>"; });
}
std::string elementsInAValue(std::size_t n) {
    return nameOfPieces(n, [](std::size_t) { return "ab<rp210:x/>"; });
}
std::string digits(std::size_t n) {
    return sets(trackText(1, "<rp210:TrackID>" + std::string(n, '0') + "7</rp210:TrackID>"));
}

std::string tracks(std::size_t n) {
    return sets(repeated(n, [](std::size_t i) {
        return trackText(i + 1, "<rp210:TrackID>7</rp210:TrackID>"
                                "<rp210:TrackName>name</rp210:TrackName>");
    }));
}

std::string tracksOfOneIdentifier(std::size_t n, bool areEqual) {
    return sets(repeated(n, [&](std::size_t i) {
        return trackText(1,
                         "<rp210:TrackID>" + std::to_string(areEqual ? 7 : i) + "</rp210:TrackID>");
    }));
}
std::string equalCopies(std::size_t n) { return tracksOfOneIdentifier(n, true); }
std::string unequalCopies(std::size_t n) { return tracksOfOneIdentifier(n, false); }

std::string tracksWithoutIdentifier(std::size_t n) {
    return sets(repeated(n, [](std::size_t) {
        return "<s377m:TimelineTrack><rp210:TrackID>7</rp210:TrackID></s377m:TimelineTrack>\n";
    }));
}

std::string tracksOfUnreadableIdentifier(std::size_t n) {
    return sets(repeated(n, [](std::size_t i) {
        return "<s377m:TimelineTrack rp210:InstanceUID=\"" + numbered("track ", i) + "\"/>\n";
    }));
}

std::string repeatedElements(std::size_t n) {
    return sets(
        trackText(1, repeated(n, [](std::size_t) { return "<rp210:TrackID>7</rp210:TrackID>"; })));
}

/// One property of the ContentStorage with links.
template <class Target> std::string links(std::size_t n, Target target) {
    return sets("<s377m:ContentStorage rp210:InstanceUID=\"" + instanceText(1) +
                "\"><rp210:Packages>" +
                repeated(n,
                         [&](std::size_t i) {
                             return "<s377m:SourcePackage_REF "
                                    "types:TargetInstance=\"" +
                                    instanceText(target(i)) + "\"/>\n";
                         }) +
                "</rp210:Packages></s377m:ContentStorage>\n");
}

std::string linksToOneSet(std::size_t n) {
    return links(n, [](std::size_t) { return std::size_t{1}; });
}
std::string linksToNothing(std::size_t n) {
    return links(n, [](std::size_t i) { return i + 1000; });
}

/// Sequences, each as the value of a reference of the one around it.
std::string setsInEachOther(std::size_t n) {
    return sets(
        repeated(n,
                 [](std::size_t i) {
                     return "<s377m:Sequence rp210:InstanceUID=\"" + instanceText(i + 1) +
                            "\"><rp210:ComponentObjects>";
                 }) +
        repeated(n, [](std::size_t) { return "</rp210:ComponentObjects></s377m:Sequence>"; }));
}

std::string setsInOneSet(std::size_t n) {
    return sets("<s377m:Sequence rp210:InstanceUID=\"" + instanceText(1) +
                "\"><rp210:ComponentObjects>" +
                repeated(n,
                         [](std::size_t i) {
                             return "<s377m:Sequence "
                                    "rp210:InstanceUID=\"" +
                                    instanceText(i + 2) + "\"/>\n";
                         }) +
                "</rp210:ComponentObjects></s377m:Sequence>\n");
}

/// Sets, each inside 250 others.
std::string setsDeepInside(std::size_t n) {
    constexpr std::size_t depth = 250;
    return sets(
        repeated(depth,
                 [](std::size_t i) {
                     return "<s377m:Sequence rp210:InstanceUID=\"" + instanceText(i + 1) +
                            "\"><rp210:ComponentObjects>";
                 }) +
        repeated(n,
                 [](std::size_t i) {
                     return "<s377m:Sequence rp210:InstanceUID=\"" + instanceText(depth + i + 2) +
                            "\"/>";
                 }) +
        repeated(depth, [](std::size_t) { return "</rp210:ComponentObjects></s377m:Sequence>"; }));
}

std::string items(std::size_t n) {
    return DocumentParts{{},
                         {},
                         "<rp210:EssenceContainers>" +
                             repeated(n,
                                      [](std::size_t) {
                                          return "<rp210:Element>06.0e.2b.34.04.01.01.02.0d.01.03."
                                                 "01.02.04.60.01</rp210:Element>\n";
                                      }) +
                             "</rp210:EssenceContainers>\n",
                         {}}
        .text();
}

std::string extensions(std::size_t n, const std::string& attribute, bool isNumbered) {
    return sets(trackText(1, "<groups:ExtensionElements>" + repeated(n, [&](std::size_t i) {
                                 char last[24] = "00";
                                 std::snprintf(last, sizeof last, "%02zx.%02zx",
                                               0x60 + (i >> 8 & 0x1F), i & 0xFF);
                                 return "<groups:DarkElement " + attribute +
                                        (isNumbered ? last : "00.01") +
                                        "\">0001</groups:DarkElement>\n";
                             }) + "</groups:ExtensionElements>"));
}

const char* const labelAttribute =
    "groups:UniversalLabel=\"06.0e.2b.34.01.01.01.01.0e.7d.01.00.00.00.";

std::string unknownLabels(std::size_t n) { return extensions(n, labelAttribute, true); }
std::string oneUnknownLabel(std::size_t n) { return extensions(n, labelAttribute, false); }
std::string unknownStaticTags(std::size_t n) {
    return extensions(n, "groups:StaticLocalTag=\"", true);
}

std::string darkSetElements(std::size_t n) {
    return sets("<groups:FloatingDarkMetadata>" +
                repeated(n,
                         [](std::size_t) {
                             return "<groups:DarkMetadata "
                                    "groups:BEROctetCount=\"4\" "
                                    "groups:Key=\"06.0e.2b.34.02."
                                    "05.01.01.0e.7d.7f.7f.01.02."
                                    "04.00\">0001</groups:"
                                    "DarkMetadata>\n";
                         }) +
                "</groups:FloatingDarkMetadata>\n");
}

std::string invalidValues(std::size_t n) {
    return sets(repeated(n, [](std::size_t i) {
        return trackText(i + 1, "<rp210:TrackID>7</rp210:TrackID><rp210:Unknown/>");
    }));
}

} // namespace

std::vector<Dimension> contentDimensions() {
    constexpr auto xml = InputKind::xml;
    return {
        {"sets of a document", xml, 64, tracks},
        {"equal sets of a document", xml, 64, equalCopies},
        {"unequal sets of a document", xml, 64, unequalCopies},
        {"sets of a document without InstanceUID", xml, 64, tracksWithoutIdentifier},
        {"sets with an unreadable InstanceUID", xml, 64, tracksOfUnreadableIdentifier},
        {"one element again in a set", xml, 256, repeatedElements},
        {"links to one set", xml, 256, linksToOneSet},
        {"links to nothing", xml, 256, linksToNothing},
        {"sets in each other", xml, 60, setsInEachOther, 250},
        {"sets in one set", xml, 64, setsInOneSet},
        {"sets in 250 others", xml, 256, setsDeepInside},
        {"items of a collection", xml, 256, items},
        {"labels of unknown properties", xml, 256, unknownLabels},
        {"unknown properties with one label", xml, 256, oneUnknownLabel},
        {"static tags of unknown properties", xml, 256, unknownStaticTags},
        {"dark sets of a document", xml, 256, darkSetElements},
        {"invalid sets of a document", xml, 64, invalidValues},
        {"character references in a value", xml, 2048, characterReferences, 32000},
        {"entity references in a value", xml, 2048, entityReferences, 32000},
        {"CDATA sections in a value", xml, 1024, cdataPieces, 16000},
        {"comments in a value", xml, 1024, commentsInAValue, 16000},
        {"instructions in a value", xml, 1024, instructionsInAValue, 16000},
        {"elements in a value", xml, 1024, elementsInAValue},
        {"digits of a number", xml, 4096, digits},
    };
}

} // namespace Corvid::Testing
