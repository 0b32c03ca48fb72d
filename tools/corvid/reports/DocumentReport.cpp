#include "tools/corvid/reports/DocumentReport.h"

#include "editing/DocumentMetadata.h"
#include "host/mxf/LocalSet.h"
#include "tools/corvid/CommandWarnings.h"
#include "tools/corvid/terminal/Messages.h"

namespace Corvid::Tool {

namespace {

/// Warns of dark sets whose bytes use local tags that no primer entry explains.
void reportUnexplainedTags(const Metadata::PartitionMetadata& metadata, Messages& messages) {
    const auto& primer = metadata.partitionDictionary();
    std::size_t count = 0;
    std::string first;
    for (auto set = metadata.darkBegin(); set != metadata.darkEnd(); ++set) {
        if (!KLV::isLocalSet((*set)->key())) {
            continue;
        }
        mxf::LocalSet properties((*set)->key(),
                                 {(*set)->value()->begin(), (*set)->value()->size()});
        while (const auto property = properties.next()) {
            const Types::LocalTag tag(property->tag);
            if (!tag.isStaticLocalTag() && primer.find(tag, false) == nullptr) {
                first = ++count != 1
                            ? first
                            : "set " + Platform::toUtf8((*set)->key().toString()) + ": local tag " +
                                  Platform::toUtf8(tag.toString(Types::dottedHexadecimal));
                break;
            }
        }
    }
    if (count != 0) {
        messages.warn({CommandWarnings::unexplainedTag,
                       first + ": nothing in the document says what it means" +
                           (count == 1 ? ""
                                       : "; so it is with tags of " + std::to_string(count - 1) +
                                             " more dark sets")});
    }
}

/// "line 12, column 5: ..."
std::string textOf(const Editing::Mistake& mistake) {
    return mistake.line == 0 ? mistake.text
                             : "line " + std::to_string(mistake.line) + ", column " +
                                   std::to_string(mistake.column) + ": " + mistake.text;
}

void report(const Editing::MergedCopies& copies, Messages& messages) {
    if (copies.equal != 0) {
        messages.note(std::to_string(copies.equal) + (copies.equal == 1 ? " set" : " sets") +
                      " that the document repeats without a difference " +
                      (copies.equal == 1 ? "was" : "were") + " left out");
    }
    for (const auto& copy : copies.unequal) {
        mxf::Warning warning(CommandWarnings::unequalCopies,
                             Platform::toUtf8(copy.identifier.toString()) +
                                 " is in the document more than once, with differences; all are "
                                 "kept");
        warning.set = copy.set;
        messages.warn(warning);
    }
}

void report(const Editing::SupplementOutcome& supplement, Messages& messages) {
    for (const auto& [name, leftOut] : supplement.leftOut) {
        messages.warn(
            {CommandWarnings::leftOutElement,
             leftOut.firstPlace + "element " + name + " is not expected here, so it is left out" +
                 (leftOut.count == 1 ? ""
                                     : "; so it is with " + std::to_string(leftOut.count - 1) +
                                           " more of that name")});
    }
    if (supplement.missingSets != 0) {
        messages.note("processing instructions about " + std::to_string(supplement.missingSets) +
                      (supplement.missingSets == 1 ? " set" : " sets") +
                      " that the document does not hold are passed over");
    }
    for (const std::string& place : supplement.firstOverruled) {
        messages.note(place + ": the document was edited, so its processing instruction is passed "
                              "over");
    }
    if (const auto rest = supplement.overruled - supplement.firstOverruled.size(); rest != 0) {
        messages.note("the same for " + std::to_string(rest) + " more");
    }
}

} // namespace

void report(const Editing::DocumentMetadata& document, Messages& messages) {
    if (!document.content.hasInstructions) {
        messages.warn({CommandWarnings::noInstructions,
                       "the document has no processing instructions of corvid, so what XML has no "
                       "place for is lost: empty values, how texts end, versions of labels and "
                       "keys"});
    }
    if (document.isPartial()) {
        messages.note("the document holds a part of the metadata of its file; the rest was left "
                      "out on purpose");
    }
    for (const auto& doubt : document.doubts) {
        messages.warn({CommandWarnings::implausibleValue, textOf(doubt)});
    }
    report(document.supplement, messages);
    report(document.copies, messages);
    reportUnexplainedTags(*document.metadata, messages);
}

void report(const Editing::DocumentMistakes& refusal, Messages& messages) {
    for (const auto& mistake : refusal.mistakes()) {
        messages.error(textOf(mistake));
    }
    if (const auto rest = refusal.count() - refusal.mistakes().size(); rest != 0) {
        messages.error(std::to_string(rest) + " more mistakes");
    }
}

} // namespace Corvid::Tool
