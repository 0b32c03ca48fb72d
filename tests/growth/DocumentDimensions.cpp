#include "tests/growth/Dimension.h"
#include "tests/growth/DocumentText.h"

#include <algorithm>
#include <map>
#include <stdexcept>

namespace Corvid::Testing {

namespace {

/// The hash by which Xerces-C spreads names over its tables, before the remainder of the number of
/// their places is taken.
std::uint64_t xercesHash(const std::string& text) {
    auto hash = static_cast<std::uint64_t>(static_cast<unsigned char>(text.front()));
    for (std::size_t i = 1; i != text.size(); ++i) {
        hash = hash * 38 + (hash >> 24) + static_cast<unsigned char>(text[i]);
    }
    return hash;
}

/// Different texts of one length that have one hash, whatever the size of the table: "ag" and "bA"
/// do the same to it.
std::vector<std::string> colliding(std::size_t count, const std::string& prefix) {
    constexpr std::size_t pairs = 14;
    std::map<std::uint64_t, std::vector<std::string>> byHash;
    for (std::size_t number = 0; number != std::size_t{1} << pairs; ++number) {
        std::string text = prefix;
        for (std::size_t bit = 0; bit != pairs; ++bit) {
            text += (number >> bit & 1) == 0 ? "ag" : "bA";
        }
        auto& texts = byHash[xercesHash(text)];
        texts.push_back(std::move(text));
        if (texts.size() == count) {
            return texts;
        }
    }
    throw std::logic_error("too few texts with one hash");
}

std::string unknownElements(std::size_t n) {
    return DocumentParts{{}, {}, {}, repeated(n, [](std::size_t) { return "<s377m:Unknown/>\n"; })}
        .text();
}

std::string unknownElementsInASet(std::size_t n) {
    return DocumentParts{
        {}, {}, repeated(n, [](std::size_t) { return "<rp210:Unknown>7</rp210:Unknown>\n"; }), {}}
        .text();
}

/// Elements in the Preface, each with a name of its own.
template <class Name> std::string elementsNamed(std::size_t n, Name name) {
    return DocumentParts{
        {}, {}, repeated(n, [&](std::size_t i) { return "<rp210:" + name(i) + "/>\n"; }), {}}
        .text();
}

std::string elementNames(std::size_t n) {
    return elementsNamed(n, [](std::size_t i) { return numbered("Name", i); });
}

std::string collidingElementNames(std::size_t n) {
    const auto names = colliding(n, "N");
    return elementsNamed(n, [&](std::size_t i) { return names[i]; });
}

std::string nameLength(std::size_t n) {
    return elementsNamed(1, [n](std::size_t) { return std::string(n, 'N'); });
}

/// One element with attributes of those names.
template <class Name> std::string oneTag(std::size_t n, Name name) {
    return DocumentParts{{},
                         {},
                         "<rp210:Unknown" +
                             repeated(n, [&](std::size_t i) { return " " + name(i) + "=\"7\""; }) +
                             "/>\n",
                         {}}
        .text();
}

std::string attributesOfATag(std::size_t n) {
    return oneTag(n, [](std::size_t i) { return numbered("name", i); });
}

std::string collidingAttributesOfATag(std::size_t n) {
    const auto names = colliding(n, "n");
    return oneTag(n, [&](std::size_t i) { return names[i]; });
}

/// Elements with an attribute each.
template <class Attribute> std::string oneAttributeEach(std::size_t n, Attribute attribute) {
    return DocumentParts{
        {},
        {},
        repeated(n, [&](std::size_t i) { return "<rp210:Unknown " + attribute(i) + "/>\n"; }),
        {}}
        .text();
}

std::string attributeNames(std::size_t n) {
    return oneAttributeEach(n, [](std::size_t i) { return numbered("name", i) + "=\"7\""; });
}

std::string attributesOfOneName(std::size_t n) {
    return oneAttributeEach(n, [](std::size_t) { return std::string("name=\"7\""); });
}

std::string collidingAttributeNames(std::size_t n) {
    const auto names = colliding(n, "n");
    return oneAttributeEach(n, [&](std::size_t i) { return names[i] + "=\"7\""; });
}

std::string attributeValue(std::size_t n) {
    return oneAttributeEach(1, [n](std::size_t) { return "name=\"" + std::string(n, 'x') + "\""; });
}

/// Declarations at the root.
template <class Prefix, class Uri>
std::string rootDeclarations(std::size_t n, Prefix prefix, Uri uri) {
    return DocumentParts{
        {},
        repeated(n, [&](std::size_t i) { return " xmlns:" + prefix(i) + "=\"" + uri(i) + "\""; }),
        repeated(n, [&](std::size_t i) { return "<" + prefix(i) + ":x/>\n"; }),
        {}}
        .text();
}

std::string somePrefix(std::size_t i) { return numbered("prefix", i); }
std::string someUri(std::size_t i) { return numbered("urn:test:", i); }
std::string theUri(std::size_t) { return "urn:test:one"; }

std::string namespacesAtTheRoot(std::size_t n) { return rootDeclarations(n, somePrefix, someUri); }
std::string prefixesOfOneUri(std::size_t n) { return rootDeclarations(n, somePrefix, theUri); }

std::string collidingPrefixesAtTheRoot(std::size_t n) {
    const auto prefixes = colliding(n, "p");
    return rootDeclarations(
        n, [&](std::size_t i) { return prefixes[i]; }, theUri);
}

/// A declaration at each element.
template <class Prefix, class Uri>
std::string declarationsInElements(std::size_t n, Prefix prefix, Uri uri) {
    return DocumentParts{{},
                         {},
                         repeated(n,
                                  [&](std::size_t i) {
                                      return "<" + prefix(i) + ":x xmlns:" + prefix(i) + "=\"" +
                                             uri(i) + "\"/>\n";
                                  }),
                         {}}
        .text();
}

std::string thePrefix(std::size_t) { return "prefix"; }

std::string namespacesInElements(std::size_t n) {
    return declarationsInElements(n, somePrefix, someUri);
}
std::string urisInElements(std::size_t n) { return declarationsInElements(n, thePrefix, someUri); }
std::string prefixesInElements(std::size_t n) {
    return declarationsInElements(n, somePrefix, theUri);
}
std::string oneNamespaceInElements(std::size_t n) {
    return declarationsInElements(n, thePrefix, theUri);
}

std::string collidingUrisInElements(std::size_t n) {
    const auto uris = colliding(n, "u");
    return declarationsInElements(n, thePrefix, [&](std::size_t i) { return uris[i]; });
}

std::string collidingPrefixesInElements(std::size_t n) {
    const auto prefixes = colliding(n, "p");
    return declarationsInElements(
        n, [&](std::size_t i) { return prefixes[i]; }, theUri);
}

/// Elements in each other.
std::string nested(std::size_t n, const std::string& begin) {
    const std::string end = "</" + begin.substr(0, begin.find(' ')) + ">";
    return DocumentParts{{},
                         {},
                         {},
                         repeated(n, [&](std::size_t) { return "<" + begin + ">"; }) +
                             repeated(n, [&](std::size_t) { return end; })}
        .text();
}

std::string nestedElements(std::size_t n) { return nested(n, "s377m:Unknown"); }
std::string nestedAttributes(std::size_t n) { return nested(n, "s377m:Unknown a=\"7\""); }

std::string comments(std::size_t n) {
    return DocumentParts{{}, {}, {}, repeated(n, [](std::size_t) { return "<!-- comment -->\n"; })}
        .text();
}

std::string commentsInFront(std::size_t n) {
    return DocumentParts{repeated(n, [](std::size_t) { return "<!-- comment -->\n"; }), {}, {}, {}}
        .text();
}

std::string foreignInstructions(std::size_t n) {
    return DocumentParts{
        repeated(n, [](std::size_t i) { return "<?" + numbered("other", i) + " x?>\n"; }),
        {},
        {},
        {}}
        .text();
}

std::string foreignInstructionsInside(std::size_t n) {
    return DocumentParts{{}, {}, {}, repeated(n, [](std::size_t) { return "<?other x?>\n"; })}
        .text();
}

std::string blanks(std::size_t n) { return DocumentParts{{}, {}, {}, std::string(n, ' ')}.text(); }
std::string lines(std::size_t n) { return DocumentParts{{}, {}, {}, std::string(n, '\n')}.text(); }

std::string textAmongElements(std::size_t n) {
    return DocumentParts{{}, {}, repeated(n, [](std::size_t) { return "<rp210:Unknown/>x"; }), {}}
        .text();
}

} // namespace

std::vector<Dimension> documentDimensions() {
    constexpr auto xml = InputKind::xml;
    return {
        {"unknown elements in the root", xml, 256, unknownElements},
        {"unknown elements in a set", xml, 256, unknownElementsInASet},
        {"names of elements", xml, 256, elementNames},
        {"names of elements that collide", xml, 256, collidingElementNames, 4096},
        {"characters of a name", xml, 2048, nameLength},
        {"attributes of a tag", xml, 250, attributesOfATag, 1000},
        {"attributes of a tag whose names collide", xml, 250, collidingAttributesOfATag, 1000},
        {"tags with an attribute", xml, 256, attributesOfOneName},
        {"names of attributes", xml, 256, attributeNames},
        {"names of attributes that collide", xml, 256, collidingAttributeNames, 4096},
        {"characters of an attribute", xml, 4096, attributeValue},
        {"namespaces at the root", xml, 250, namespacesAtTheRoot, 1000},
        {"prefixes of one namespace", xml, 250, prefixesOfOneUri, 1000},
        {"prefixes at the root that collide", xml, 250, collidingPrefixesAtTheRoot, 1000},
        {"namespaces at the elements", xml, 256, namespacesInElements},
        {"namespaces of one prefix", xml, 256, urisInElements},
        {"prefixes at the elements", xml, 256, prefixesInElements},
        {"one namespace declared again", xml, 256, oneNamespaceInElements},
        {"namespaces that collide", xml, 256, collidingUrisInElements, 4096},
        {"prefixes at the elements that collide", xml, 256, collidingPrefixesInElements, 4096},
        {"unknown elements in each other", xml, 512, nestedElements, 4000},
        {"attributes of elements in each other", xml, 250, nestedAttributes, 1000},
        {"comments", xml, 512, comments},
        {"comments in front of the root", xml, 512, commentsInFront},
        {"foreign instructions in front of the root", xml, 512, foreignInstructions},
        {"foreign instructions in the root", xml, 512, foreignInstructionsInside},
        {"blanks between elements", xml, 8192, blanks},
        {"lines between elements", xml, 8192, lines},
        {"text among elements", xml, 256, textAmongElements},
    };
}

} // namespace Corvid::Testing
