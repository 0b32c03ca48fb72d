#include "fuzz/RoundTrips.h"

#include "fuzz/FuzzInput.h"
#include "tests/support/HeaderPartition.h"
#include "tests/support/LeaksByContract.h"
#include "tools/corvid/RoundTrip.h"

#include <algorithm>

namespace Corvid::Fuzzing {

namespace {

/// Whether a property only changed its place: a document may have a property of a set's own class
/// among its extension elements alone, and in a file it is one of the class.
bool isMoved(const Tool::Difference& difference, const std::vector<Tool::Difference>& others) {
    using Kind = Tool::DifferenceKind;
    const bool isMissing = difference.kind == Kind::missingProperty;
    const Kind counterpart = isMissing ? Kind::extraProperty : Kind::missingProperty;
    const auto valueOf = [](const Tool::Difference& each) {
        return each.detail.substr(each.detail.find(' ') + 1); // behind "was" or "is"
    };
    return (isMissing || difference.kind == Kind::extraProperty) &&
           std::any_of(others.begin(), others.end(), [&](const Tool::Difference& other) {
               return other.kind == counterpart && other.instanceUID == difference.instanceUID &&
                      other.property == difference.property &&
                      valueOf(other) == valueOf(difference);
           });
}

void refuseDamage(const Tool::Comparison& comparison) {
    for (const Tool::Difference& difference : comparison.differences) {
        if (isMoved(difference, comparison.differences)) {
            continue;
        }
        fail(std::string(Tool::describe(difference.kind).name) + ": set " + difference.set + " " +
             difference.instanceUID + ", property " + difference.property + ": " +
             difference.detail);
    }
}

} // namespace

Templates::auto_ptr<Metadata::PartitionMetadata> roundTripKlv(
    Metadata::PartitionMetadata& metadata) {
    const auto bytes = Testing::headerPartitionOf(metadata);
    auto again = readMxf(bytes.data(), bytes.size());
    refuseDamage(Tool::compare(metadata, *again, {}));
    return again;
}

void roundTripXml(Metadata::PartitionMetadata& metadata) {
    // Without Preface, the document is given up.
    const Testing::LeaksByContract leaks;
    refuseDamage(Tool::compareWithRoundTrip(metadata));
}

} // namespace Corvid::Fuzzing
