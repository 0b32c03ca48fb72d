#include "tests/growth/KnownGrowth.h"

#include <algorithm>

namespace Corvid::Testing {

namespace {

/// What is just below the limit may be above it with another compiler, or in the next run: hash
/// tables have another key then.
constexpr double clearlySound = 1.9;

bool isKnown(const Growth& growth) {
    const auto& all = knownGrowths();
    return std::any_of(all.begin(), all.end(), [&](const KnownGrowth& known) {
        const auto& operations = known.operations;
        return known.dimension == growth.dimension->name &&
               std::find(operations.begin(), operations.end(), growth.operation->name) !=
                   operations.end();
    });
}

} // namespace

const std::vector<KnownGrowth>& knownGrowths() {
    static const std::string declared =
        "each prefix is looked for among those declared around it, which are at most 1024";
    static const std::string inOneTag =
        "each attribute is compared with those of its tag, which are at most 1024";
    static const std::string around =
        "Xerces-C looks prefixes up among the elements around, which are at most 4096";
    static const std::string inheritance =
        "each set has all properties of its ancestors, so there are as many as pairs";
    static const std::string sorting =
        "namespaces are sorted; of 512, the most, the logarithm shows";
    static const std::vector<std::string> reading = {"getPartitionMetadataFromBuffer"};
    static const std::vector<std::string> readingAndValidating = {"--validate",
                                                                  "getPartitionMetadataFromBuffer"};
    static const std::vector<KnownGrowth> known = {
        {"attributes of a tag", reading, inOneTag},
        {"attributes of elements in each other", readingAndValidating, around},
        {"unknown elements in each other", readingAndValidating, around},
        {"sets in each other", {"--validate"}, around},
        {"namespaces at the root", reading, declared},
        {"prefixes of one namespace", reading, declared},
        {"sets times inherited properties",
         {"schema", "schema, compiled", "dictionary", "dictionary --json"},
         inheritance},
        {"ancestors of a set",
         {"to-xml", "from-xml", "schema", "schema, compiled", "dictionary", "dictionary --json"},
         inheritance},
        {"namespaces that nothing uses",
         {"to-xml", "from-xml", "schema", "schema, compiled", "dictionary", "dictionary --json"},
         sorting},
    };
    return known;
}

std::vector<std::string> mistakesIn(const std::vector<Growth>& growths, bool isComplete) {
    std::vector<std::string> mistakes;
    for (const Growth& growth : growths) {
        if (!growth.isSound() && !isKnown(growth)) {
            mistakes.push_back(growth.describe());
        } else if (isComplete && growth.isSound() && growth.factor() <= clearlySound &&
                   isKnown(growth)) {
            mistakes.push_back(growth.describe() + "; it need not be among the known ones");
        }
    }
    return mistakes;
}

} // namespace Corvid::Testing
