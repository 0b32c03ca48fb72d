#include "fuzz/RoundTrips.h"

#include "fuzz/FuzzInput.h"
#include "tests/support/HeaderPartition.h"
#include "tests/support/LeaksByContract.h"
#include "tools/corvid/RoundTrip.h"

namespace Corvid::Fuzzing {

namespace {

void refuseDamage(const Tool::Comparison& comparison) {
    for (const Tool::Difference& difference : comparison.differences) {
        fail(std::string(Tool::describe(difference.kind).name) + ": set " + difference.set + " " +
             difference.instanceUID + ", property " + difference.property + ": " +
             difference.detail);
    }
}

} // namespace

void roundTripKlv(Metadata::PartitionMetadata& metadata) {
    const auto bytes = Testing::headerPartitionOf(metadata);
    const auto again = readMxf(bytes.data(), bytes.size());
    refuseDamage(Tool::compare(metadata, *again, {}));
}

void roundTripXml(Metadata::PartitionMetadata& metadata) {
    // Without Preface, the document is given up.
    const Testing::LeaksByContract leaks;
    refuseDamage(Tool::compareWithRoundTrip(metadata));
}

} // namespace Corvid::Fuzzing
