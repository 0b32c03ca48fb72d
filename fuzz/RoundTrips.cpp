#include "fuzz/RoundTrips.h"

#include "XMLBuilder/XML2Partition.h"
#include "XMLBuilder/XMLBuilder.h"
#include "editing/RoundTrip.h"
#include "fuzz/FuzzInput.h"
#include "host/dataio/Memory.h"
#include "host/xmlutils/InvalidCharacters.h"
#include "host/xmlutils/Serialise.h"
#include "tests/support/HeaderPartition.h"
#include "tests/support/LeaksByContract.h"

#include <algorithm>
#include <map>
#include <set>

namespace Corvid::Fuzzing {

namespace {

/// Whether a property only changed its place: a document may have a property of a set's own class
/// among its extension elements alone, and in a file it is one of the class.
bool isMoved(const Editing::Difference& difference, const Editing::Differences& others) {
    using Kind = Editing::DifferenceKind;
    const bool isMissing = difference.kind == Kind::missingProperty;
    const Kind counterpart = isMissing ? Kind::extraProperty : Kind::missingProperty;
    const auto valueOf = [](const Editing::Difference& each) {
        return each.detail.substr(each.detail.find(' ') + 1); // after "was" or "is"
    };
    return (isMissing || difference.kind == Kind::extraProperty) &&
           std::any_of(others.begin(), others.end(), [&](const Editing::Difference& other) {
               return other.kind == counterpart && other.instanceUID == difference.instanceUID &&
                      other.property == difference.property &&
                      valueOf(other) == valueOf(difference);
           });
}

void refuseDamage(const Editing::Comparison& comparison) {
    for (const Editing::Difference& difference : comparison.differences) {
        if (isMoved(difference, comparison.differences)) {
            continue;
        }
        fail(std::string(Editing::describe(difference.kind).name) + ": set " + difference.set +
             " " + difference.instanceUID + ", property " + difference.property + ": " +
             difference.detail);
    }
}

/// The library's document; empty without a Preface.
std::string documentOf(Metadata::PartitionMetadata& metadata) {
    const auto document = XMLBuilder::partition2XML(&metadata, false, false);
    if (!document) {
        return {};
    }
    XMLUtils::ReplaceInvalidCharacters invalid(0);
    DataIO::Memory::MemoryDataSink text;
    XMLUtils::serialise(document.get(), XMLUtils::EncodingType::utf8, XMLUtils::Layout::indented,
                        invalid, text);
    return {text.rawBuffer(), text.rawBuffer() + text.serializedSize()};
}

/// What the library reads of a document and writes again.
std::string throughLibrary(const std::string& document) {
    Metadata::PartitionMetadata metadata(MetaMetadata::Dictionary::builtIn());
    XML2Partition::getPartitionMetadataFromBuffer(
        reinterpret_cast<const unsigned char*>(document.data()),
        static_cast<unsigned>(document.size()), &metadata);
    return documentOf(metadata);
}

/// A document whose sets and links are numbered in the order of their first use.
struct NumberedDocument {
    std::string text;
    bool repeatsSets = false; ///< a set that several others own can be there twice
};

NumberedDocument withNumbers(std::string_view document) {
    constexpr std::string_view nameOfSet = ":InstanceUID=\"";
    NumberedDocument numbered;
    std::map<std::string_view, std::size_t> numbers;
    std::set<std::string_view> sets;
    while (!document.empty()) {
        const auto set = document.find(nameOfSet);
        const auto attribute = std::min(set, document.find(":TargetInstance=\""));
        const auto value = std::min(document.find('"', attribute), document.size() - 1) + 1;
        numbered.text += document.substr(0, value);
        document.remove_prefix(value);
        const auto name = document.substr(0, document.find('"'));
        if (!name.empty()) {
            numbered.text +=
                std::to_string(numbers.try_emplace(name, numbers.size()).first->second);
            numbered.repeatsSets |= attribute == set && !sets.insert(name).second;
        }
        document.remove_prefix(name.size());
    }
    return numbered;
}

} // namespace

Templates::auto_ptr<Metadata::PartitionMetadata> roundTripKlv(
    Metadata::PartitionMetadata& metadata) {
    const auto bytes = Testing::headerPartitionOf(metadata);
    auto again = readMxf(bytes.data(), bytes.size());
    refuseDamage(Editing::compare(metadata, *again));
    return again;
}

void roundTripXml(Metadata::PartitionMetadata& metadata) {
    refuseDamage(Editing::compareWithRoundTrip(metadata));
}

void roundTripLibrary(Metadata::PartitionMetadata& metadata) {
    // A document that can't be written as a whole is given up.
    const Testing::LeaksByContract leaks;
    const std::string first = documentOf(metadata);
    if (first.empty()) {
        return;
    }
    const std::string second = throughLibrary(first);
    const NumberedDocument before = withNumbers(second);
    const NumberedDocument after = withNumbers(throughLibrary(second));
    if (!before.repeatsSets && before.text != after.text) {
        fail("the library changes its own document:\n" + before.text + "\n" + after.text);
    }
}

} // namespace Corvid::Fuzzing
