#include "tools/corvid/ToXml.h"

#include "editing/WrittenDocument.h"
#include "host/dataio/Memory.h"
#include "host/xmlutils/InvalidCharacters.h"
#include "tools/corvid/CommandWarnings.h"
#include "tools/corvid/ExitStatus.h"
#include "tools/corvid/input/InstanceText.h"
#include "tools/corvid/output/OpenOutput.h"
#include "tools/corvid/reports/LeftOutReferences.h"
#include "tools/corvid/terminal/Messages.h"
#include "tools/corvid/terminal/UsageError.h"

#include <memory>
#include <optional>
#include <vector>

namespace Corvid::Tool {

namespace {

/// Refuses, and says what people can do about it.
class RefuseWithAdvice final : public XMLUtils::InvalidCharacters {
public:
    void found(const XMLUtils::InvalidCharacter& character) override {
        throw Exceptions::InvalidFormat(
            character.describe() + "; --replace-invalid writes U+FFFD instead", CORVID_HERE);
    }
};

/// Keeps text as long as it is not too much to keep.
class HeldText final : public DataIO::DataSink {
public:
    void write(const unsigned char* bytes, std::size_t count) override {
        isWhole_ = isWhole_ && count <= mostKept - kept_.size();
        if (isWhole_) {
            kept_.insert(kept_.end(), bytes, bytes + count);
        } else {
            kept_ = {};
        }
    }
    bool isWhole() const noexcept { return isWhole_; }
    const std::vector<unsigned char>& kept() const noexcept { return kept_; }

private:
    static constexpr std::size_t mostKept = 4 * 1024 * 1024;
    std::vector<unsigned char> kept_;
    bool isWhole_ = true;
};

/// Serialises a document with the options of the command line.
class Writer {
public:
    Writer(const Editing::WrittenDocument& document, const ToXmlOptions& options)
        : document_(document), options_(options) {}

    void write(Output& output, const MetaMetadata::Dictionary& dictionary,
               Messages& messages) const {
        if (options_.validate != nullptr) {
            DataIO::Memory::MemoryDataSink text;
            writeTo(text, messages);
            refuseWarnings(options_.warningsAsErrors, messages);
            options_.validate(text.rawBuffer(), text.serializedSize(), dictionary, messages);
            output.write(text.rawBuffer(), text.serializedSize());
        } else if (output.isHeldBack() || (options_.replaceInvalid && !options_.warningsAsErrors)) {
            writeTo(output, messages);
        } else {
            writeWholeOrNothing(output, messages);
        }
    }

private:
    void writeTo(DataIO::DataSink& sink, Messages& messages) const {
        if (!options_.replaceInvalid) {
            RefuseWithAdvice refuse;
            serialise(refuse, sink);
            return;
        }
        XMLUtils::ReplaceInvalidCharacters replaced;
        serialise(replaced, sink);
        for (const auto& character : replaced.replaced()) {
            messages.warn({CommandWarnings::replacedCharacter,
                           character.describe() + ": replaced by U+FFFD"});
        }
        if (replaced.count() != 0) {
            messages.note(std::to_string(replaced.count()) +
                          (replaced.count() == 1 ? " code unit" : " code units") +
                          " that XML can't hold " + (replaced.count() == 1 ? "was" : "were") +
                          " replaced by U+FFFD");
        }
    }

    /// For whoever reads standard output. What is too long to keep is serialised a second time,
    /// when it is known that nothing is refused.
    void writeWholeOrNothing(Output& output, Messages& messages) const {
        HeldText text;
        writeTo(text, messages);
        refuseWarnings(options_.warningsAsErrors, messages);
        if (text.isWhole()) {
            output.write(text.kept().data(), text.kept().size());
        } else {
            writeTo(output, messages);
        }
    }

    void serialise(XMLUtils::InvalidCharacters& invalid, DataIO::DataSink& sink) const {
        document_.serialise(options_.encoding,
                            options_.compact ? XMLUtils::Layout::compact
                                             : XMLUtils::Layout::indented,
                            invalid, sink);
    }

    const Editing::WrittenDocument& document_;
    const ToXmlOptions& options_;
};

Editing::DocumentContent contentOf(const ToXmlOptions& options) {
    Editing::DocumentContent content{options.referencesAsValues, options.structuralOnly, {}};
    if (!options.start.empty()) {
        content.start = parseInstanceUID(options.start);
        if (!content.start) {
            throw UsageError{"--start: expected an InstanceUID: 16 bytes as hexadecimal digits, "
                             "joined by full stops as in the documents, or a UUID"};
        }
    }
    return content;
}

/// @param text  what people named the set by, if they did.
const Metadata::MetadataSet& findStart(const Metadata::PartitionMetadata& metadata,
                                       const Editing::DocumentContent& content,
                                       const std::string& text) {
    if (content.start) {
        const auto found = metadata.resolve(*content.start);
        if (found.empty()) {
            throw Exceptions::InvalidArgument("no set with the InstanceUID " + text +
                                                  " to start from in this partition",
                                              CORVID_HERE);
        }
        return found.front();
    }
    const auto prefaces = metadata.find(Metadata::Structural::StructuralMetadataKeys::preface());
    if (prefaces.empty()) {
        throw Exceptions::InvalidFormat(
            "the partition has no Preface; to-xml --start INSTANCEUID begins with another set",
            CORVID_HERE);
    }
    return *prefaces.front();
}

/// Model and document, kept until the process ends: to take tens of thousands of objects apart just
/// before costs time and brings nothing.
struct Leftovers {
    mxf::HeaderMetadata header;
    std::optional<Editing::WrittenDocument> document;
};

void convert(const ToXmlOptions& options, Messages& messages, Leftovers& work) {
    const Editing::DocumentContent content = contentOf(options);
    const auto output =
        openOutput(options.output, inputsOf({options.clip.path}, options.clip.dictionaries),
                   options.force ? MayReplace::everything : MayReplace::noMxfFile);
    const auto dictionary = loadDictionary(options.clip.dictionaries);
    mxf::File file(options.clip.path, dictionary, messages);
    work.header = readMetadata(file, options.clip, messages);
    if (options.clip.partition == "auto" && work.header.partition != 0) {
        messages.note("metadata is from " +
                      describe(work.header.partition, file.partitions()[work.header.partition]));
    }
    const auto& start = findStart(*work.header.metadata, content, options.start);
    if (options.referencesAsValues) {
        warnOfLeftOutReferences(*work.header.metadata, start, options.structuralOnly, messages);
    }
    work.document.emplace(*work.header.metadata, content);
    Writer(*work.document, options).write(*output, *dictionary, messages);
    refuseWarnings(options.warningsAsErrors, messages);
    output->commit();
}

} // namespace

void toXml(const ToXmlOptions& options, Messages& messages) {
    messages.setFile(options.clip.path);
    // Reachable to the end, so that leak checkers see that nothing is lost.
    static std::vector<std::unique_ptr<Leftovers>> kept;
    kept.push_back(std::make_unique<Leftovers>());
    convert(options, messages, *kept.back());
}

} // namespace Corvid::Tool
