#include "tools/corvid/DocumentMetadata.h"

#include "XMLBuilder/reader/strict/ReadStrictly.h"
#include "XMLBuilder/reader/strict/Strictness.h"
#include "host/dataio/OpenSource.h"
#include "host/mxf/LocalSet.h"
#include "host/mxf/Partitions.h"
#include "tools/corvid/CommandWarnings.h"
#include "tools/corvid/Messages.h"
#include "tools/corvid/RenameSets.h"
#include "tools/corvid/supplement/SupplementText.h"

#include <algorithm>
#include <array>
#include <optional>
#include <tuple>

namespace Corvid::Tool {

namespace {

/// How a partition pack begins; in front of it is at most a run-in (SMPTE ST 377-1).
constexpr std::array<char, 11> packKey = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x05,
                                          0x01, 0x01, 0x0d, 0x01, 0x02};

/// Sets of one identifier that differ, where the instructions do not speak of them, are a mistake:
/// at the second of them.
void refuseUnequalCopies(const MergedCopies& copies, const DocumentSupplement& supplement,
                         const XMLBuilder::Strictness& document, XMLBuilder::Mistakes& mistakes) {
    for (const auto& copy : copies.unequal) {
        const bool isTold = std::any_of(supplement.copies.begin(), supplement.copies.end(),
                                        [&copy](const DocumentSupplement::Copies& each) {
                                            return each.set == copy.identifier;
                                        });
        if (!isTold) {
            auto mistake = document.placeOf(copy.identifier, 1);
            mistake.text = "set " + copy.set + " " + Platform::toUtf8(copy.identifier.toString()) +
                           ": another set has this identifier and differs";
            mistakes.add(mistake);
        }
    }
}

} // namespace

DocumentMistakes::DocumentMistakes(const XMLBuilder::Mistakes& mistakes)
    : InvalidFormat(mistakes.entries().front().text +
                        (mistakes.count() == 1
                             ? ""
                             : ", and " + std::to_string(mistakes.count() - 1) + " more mistakes"),
                    CORVID_HERE),
      mistakes_(mistakes) {}

void complete(DocumentMetadata& document, const DocumentSupplement& supplement,
              SupplementReader& reader, DocumentIdentifiers identifiers) {
    document.supplement = reader.apply(*document.metadata);
    document.hasInstructions = supplement.isThere;
    document.isPartial = supplement.partial.has_value();
    CopyCounts copies;
    for (const auto& [set, count] : supplement.copies) {
        copies[set] = count;
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
    reading.end = [&](const XMLBuilder::Strictness& strictness) {
        if (mistakes.count() == 0) {
            complete(document, supplement, *reader, identifiers);
            refuseUnequalCopies(document.copies, supplement, strictness, mistakes);
        }
    };
    XMLBuilder::InstanceNameTable names(XMLBuilder::WrittenIdentifiers::kept);
    XMLBuilder::readStrictly(source, *document.metadata, names, reading, mistakes);
    if (mistakes.count() != 0) {
        throw DocumentMistakes(mistakes);
    }
    document.doubts = mistakes;
    return document;
}

DocumentFile::DocumentFile(const std::string& path) : file_(DataIO::openSource(path)) {
    std::string front(mxf::greatestRunIn + packKey.size(), '\0');
    front.resize(file_->readAt(0, reinterpret_cast<unsigned char*>(front.data()), front.size()));
    if (front.empty()) {
        throw Exceptions::InvalidFormat("the file is empty, expected an XML document", CORVID_HERE);
    }
    if (std::search(front.begin(), front.end(), packKey.begin(), packKey.end()) != front.end()) {
        throw Exceptions::InvalidFormat("this is an MXF file, expected an XML document; corvid "
                                        "to-xml makes one of it",
                                        CORVID_HERE);
    }
}

std::size_t DocumentFile::read(unsigned char* to, std::size_t count) {
    const std::size_t got = file_->readAt(position_, to, count);
    position_ += got;
    return got;
}

std::uint64_t DocumentFile::remaining() const { return file_->size() - position_; }

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
std::string textOf(const XMLBuilder::Mistakes::Entry& entry) {
    return entry.line == 0 ? entry.text
                           : "line " + std::to_string(entry.line) + ", column " +
                                 std::to_string(entry.column) + ": " + entry.text;
}

void report(const MergedCopies& copies, Messages& messages) {
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

void report(const SupplementOutcome& supplement, Messages& messages) {
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

void report(const DocumentMetadata& document, Messages& messages) {
    if (!document.hasInstructions) {
        messages.warn({CommandWarnings::noInstructions,
                       "the document has no processing instructions of corvid, so what XML has no "
                       "place for is lost: empty values, how texts end, versions of labels and "
                       "keys"});
    }
    if (document.isPartial) {
        messages.note("the document holds a part of the metadata of its file; the rest was left "
                      "out on purpose");
    }
    for (const auto& doubt : document.doubts.doubts()) {
        messages.warn({CommandWarnings::implausibleValue, textOf(doubt)});
    }
    report(document.supplement, messages);
    report(document.copies, messages);
    reportUnexplainedTags(*document.metadata, messages);
}

void report(const DocumentMistakes& refusal, Messages& messages) {
    std::vector<XMLBuilder::Mistakes::Entry> entries = refusal.mistakes().entries();
    std::stable_sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) {
        return std::tie(a.line, a.column) < std::tie(b.line, b.column);
    });
    for (const auto& entry : entries) {
        messages.error(textOf(entry));
    }
    if (const auto rest = refusal.mistakes().count() - entries.size(); rest != 0) {
        messages.error(std::to_string(rest) + " more mistakes");
    }
}

} // namespace Corvid::Tool
