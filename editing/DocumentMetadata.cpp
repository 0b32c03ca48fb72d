#include "editing/DocumentMetadata.h"

#include "XMLBuilder/reader/strict/Mistakes.h"
#include "XMLBuilder/reader/strict/ReadStrictly.h"
#include "XMLBuilder/reader/strict/Strictness.h"
#include "editing/CompleteDocument.h"
#include "editing/MergeCopies.h"
#include "editing/RenameSets.h"
#include "editing/supplement/ApplySupplement.h"
#include "editing/supplement/SupplementText.h"

#include <algorithm>
#include <optional>
#include <tuple>

namespace Corvid::Editing {

namespace {

/// Sets of one identifier that differ are a mistake, where the instructions do not speak of them.
void refuseUnequalCopies(const MergedCopies& copies, XMLBuilder::Strictness& document,
                         XMLBuilder::Mistakes& mistakes) {
    for (const auto& copy : copies.unequal) {
        if (!copy.isExpected) {
            auto mistake = copy.isDark ? document.placeOfDarkSet(copy.nth)
                                       : document.placeOf(copy.identifier, copy.nth);
            mistake.text = "set " + copy.set + " " + Platform::toUtf8(copy.identifier.toString()) +
                           ": another set has this identifier and differs";
            mistakes.add(mistake);
        }
    }
}

/// In the order of the document: some are found when it has been read.
std::vector<Mistake> inOrder(const std::vector<XMLBuilder::Mistakes::Entry>& entries) {
    std::vector<Mistake> mistakes;
    mistakes.reserve(entries.size());
    for (const auto& entry : entries) {
        mistakes.push_back({entry.line, entry.column, entry.text});
    }
    std::stable_sort(mistakes.begin(), mistakes.end(), [](const auto& a, const auto& b) {
        return std::tie(a.line, a.column) < std::tie(b.line, b.column);
    });
    return mistakes;
}

} // namespace

DocumentMistakes::DocumentMistakes(std::vector<Mistake> mistakes, std::size_t count)
    : InvalidFormat(mistakes.front().text +
                        (count == 1 ? "" : ", and " + std::to_string(count - 1) + " more mistakes"),
                    CORVID_HERE),
      mistakes_(std::move(mistakes)), count_(count) {}

DocumentMistakes::~DocumentMistakes() = default;

void complete(DocumentMetadata& document, const DocumentSupplement& supplement,
              SupplementReader& reader, DocumentIdentifiers identifiers) {
    document.supplement = reader.apply(*document.metadata);
    document.content.hasInstructions = supplement.isThere;
    if (supplement.partial) {
        document.content.structuralOnly = supplement.partial->structuralOnly;
        document.content.start = supplement.partial->start;
    }
    CopyCounts copies;
    for (const auto& [set, known, dark] : supplement.copies) {
        copies[set] = {known, dark};
    }
    document.copies = mergeCopies(*document.metadata, copies);
    if (identifiers == DocumentIdentifiers::fresh) {
        renameSets(*document.metadata);
    }
}

DocumentMetadata readDocument(DataIO::DataSource& source,
                              const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary,
                              DocumentIdentifiers identifiers) {
    DocumentMetadata document;
    document.metadata = Templates::auto_ptr<Metadata::PartitionMetadata>(
        new Metadata::PartitionMetadata(dictionary));
    DocumentSupplement supplement;
    std::optional<SupplementReader> reader;
    XMLBuilder::Mistakes mistakes;
    XMLBuilder::StrictReading reading;
    reading.begin = [&](const std::vector<Instruction>& instructions) {
        supplement = parseSupplement(instructions);
        reader.emplace(supplement);
        reader->explainTags(document.metadata->partitionDictionary());
        return &*reader;
    };
    reading.stray = [&](const Instruction& instruction) {
        if (instruction.target == supplementTarget) {
            mistakes.add({instruction.line, instruction.column,
                          "processing instruction " + instruction.target +
                              " is after the start of the root, expected in front of it"});
        }
    };
    reading.end = [&](XMLBuilder::Strictness& strictness) {
        document.content.referencesAsValues = strictness.hasSetsAsValues();
        if (mistakes.count() == 0) {
            complete(document, supplement, *reader, identifiers);
            refuseUnequalCopies(document.copies, strictness, mistakes);
        }
    };
    XMLBuilder::readStrictly(source, *document.metadata, reading, mistakes);
    if (mistakes.count() != 0) {
        throw DocumentMistakes(inOrder(mistakes.entries()), mistakes.count());
    }
    document.doubts = inOrder(mistakes.doubts());
    return document;
}

} // namespace Corvid::Editing
