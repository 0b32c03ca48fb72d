#include "editing/WrittenDocument.h"

#include "XMLBuilder/writer/Document.h"
#include "editing/supplement/CollectSupplement.h"
#include "editing/supplement/SupplementText.h"
#include "host/base/Exceptions.h"
#include "host/xmlutils/InvalidCharacters.h"

#include <set>

namespace Corvid::Editing {

namespace {

using Metadata::MetadataSet;
using Metadata::PartitionMetadata;
using XMLBuilder::DocumentPlan;

const MetadataSet& prefaceOf(const PartitionMetadata& metadata) {
    const auto prefaces = metadata.find(Metadata::Structural::StructuralMetadataKeys::preface());
    if (prefaces.empty()) {
        throw Exceptions::InvalidFormat("the partition has no Preface", CORVID_HERE);
    }
    return *prefaces.front();
}

const MetadataSet& startOf(const PartitionMetadata& metadata, const DocumentContent& content) {
    if (!content.start) {
        return prefaceOf(metadata);
    }
    const auto found = metadata.resolve(*content.start);
    if (found.empty()) {
        throw Exceptions::InvalidArgument("no set with the InstanceUID " +
                                              Platform::toUtf8(content.start->toString()) +
                                              " to start from in this partition",
                                          CORVID_HERE);
    }
    return found.front();
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

WrittenDocument::WrittenDocument(PartitionMetadata& metadata, const DocumentContent& content)
    : plan_(metadata, startOf(metadata, content),
            {content.referencesAsValues, content.structuralOnly}) {
    if (content.hasInstructions) {
        for (const std::string& instruction : toInstructions(supplementOf(content, plan_))) {
            instructions_ += "\n<?" + instruction + "?>";
        }
    }
}

void WrittenDocument::serialise(XMLUtils::EncodingType encoding, XMLUtils::Layout layout,
                                XMLUtils::InvalidCharacters& invalid,
                                DataIO::DataSink& sink) const {
    XMLBuilder::writeDocumentText(plan_, encoding, layout, invalid, sink, instructions_);
}

void writeDocument(PartitionMetadata& metadata, const DocumentContent& content,
                   DataIO::DataSink& sink) {
    XMLUtils::RefuseInvalidCharacters refuse;
    WrittenDocument(metadata, content)
        .serialise(XMLUtils::EncodingType::utf8, XMLUtils::Layout::indented, refuse, sink);
}

} // namespace Corvid::Editing
