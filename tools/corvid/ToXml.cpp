#include "tools/corvid/ToXml.h"

#include "editing/WrittenDocument.h"
#include "host/dataio/Memory.h"
#include "host/xmlutils/InvalidCharacters.h"
#include "tools/corvid/CommandWarnings.h"
#include "tools/corvid/ExitStatus.h"
#include "tools/corvid/KeptToEnd.h"
#include "tools/corvid/batch/CountedSource.h"
#include "tools/corvid/batch/ReadFiles.h"
#include "tools/corvid/input/StartSet.h"
#include "tools/corvid/output/Output.h"
#include "tools/corvid/reports/LeftOutReferences.h"
#include "tools/corvid/terminal/Messages.h"

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

    /// For readers of standard output. What is too long to keep is serialised a second time,
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

/// Model and document; see keptToEnd().
struct Leftovers {
    mxf::HeaderMetadata header;
    std::optional<Editing::WrittenDocument> document;
};

void convert(const ToXmlOptions& options, const StartSet& startSet,
             const DictionaryPointer& dictionary, FileTask& task) {
    Messages& messages = task.messages;
    ClipOptions clip = options.clip;
    clip.path = task.path;
    const Leftover<Leftovers> work(task.isOneOfMany);
    mxf::File file(openCounted(clip, task), dictionary, messages);
    work->header = readMetadata(file, clip);
    noteOrigin(file, work->header, clip, messages);
    const auto& start = startSet.in(*work->header.metadata);
    if (options.referencesAsValues) {
        warnOfLeftOutReferences(*work->header.metadata, start, options.structuralOnly, messages);
    }
    work->document.emplace(*work->header.metadata,
                           Editing::DocumentContent{options.referencesAsValues,
                                                    options.structuralOnly, startSet.identifier()});
    Writer(*work->document, options).write(task.output, *dictionary, messages);
    refuseWarnings(options.warningsAsErrors, messages);
    task.output.commit();
}

} // namespace

void toXml(const ToXmlOptions& options, Messages& messages) {
    const StartSet startSet(options.start);
    BatchWork many;
    many.suffix = ".xml";
    many.isDocument = true;
    many.mayDestroy = options.force;
    writeDocuments(
        options.batch, options.clip.dictionaries, options.output, std::move(many),
        [&](const DictionaryPointer& dictionary, FileTask& task) {
            convert(options, startSet, dictionary, task);
        },
        messages);
}

} // namespace Corvid::Tool
