#include "editing/WriteDocument.h"

#include "XMLBuilder/writer/Document.h"
#include "editing/supplement/CollectSupplement.h"
#include "editing/supplement/SupplementText.h"
#include "host/base/Exceptions.h"

#include <set>

namespace Corvid::Editing {

namespace {

using Metadata::MetadataSet;
using Metadata::PartitionMetadata;
using XMLBuilder::DocumentPlan;

const MetadataSet& startOf(const PartitionMetadata& metadata, const DocumentContent& content) {
    return content.start ? metadata.resolve(*content.start).front() : prefaceOf(metadata);
}

/// The identifiers of the sets that a document holds.
std::set<Types::UUID> identifiersIn(const DocumentPlan& plan) {
    std::set<Types::UUID> identifiers;
    for (const auto* pass : {&plan.mainPass(), &plan.floatingPass()}) {
        for (const auto& [set, place] : pass->places) {
            if (set->metaMetadataSet() != nullptr && set->hasInstanceUID()) {
                identifiers.insert(set->instanceUID());
            }
        }
    }
    return identifiers;
}

DocumentSupplement supplementOf(const DocumentContent& content, const DocumentPlan& plan) {
    if (!content.structuralOnly && !content.start) {
        return collectSupplement(plan);
    }
    const auto written = identifiersIn(plan);
    auto supplement =
        collectSupplement(plan, DocumentPart{&startOf(plan.partition(), content),
                                             content.structuralOnly, [&](const MetadataSet& set) {
                                                 return !set.hasInstanceUID() ||
                                                        written.count(set.instanceUID()) != 0;
                                             }});
    supplement.partial = {content.structuralOnly, content.start};
    return supplement;
}

} // namespace

const MetadataSet& prefaceOf(const PartitionMetadata& metadata) {
    const auto prefaces = metadata.find(Metadata::Structural::StructuralMetadataKeys::preface());
    if (prefaces.empty()) {
        throw Exceptions::InvalidFormat(
            "the partition has no Preface; to-xml --start INSTANCEUID begins with another set",
            CORVID_HERE);
    }
    return *prefaces.front();
}

WrittenDocument::WrittenDocument(PartitionMetadata& metadata, const DocumentContent& content)
    : plan_(metadata, startOf(metadata, content),
            {content.referencesAsValues, content.structuralOnly}) {
    for (const std::string& instruction : toInstructions(supplementOf(content, plan_))) {
        instructions_ += "\n<?" + instruction + "?>";
    }
}

void WrittenDocument::serialise(XMLUtils::EncodingType encoding, XMLUtils::Layout layout,
                                XMLUtils::InvalidCharacters& invalid,
                                DataIO::DataSink& sink) const {
    XMLBuilder::writeDocumentText(plan_, encoding, layout, invalid, sink, instructions_);
}

} // namespace Corvid::Editing
