#include "XMLBuilder/XML2Partition.h"
#include "XMLBuilder/XMLBuilder.h"
#include "XMLBuilder/schema/DocumentValidator.h"
#include "XMLBuilder/schema/SchemaTexts.h"
#include "host/dataio/MemorySource.h"
#include "host/mxf/File.h"
#include "host/mxf/HeaderMetadataWriter.h"
#include "host/xmlutils/Initializer.h"
#include "host/xmlutils/InvalidCharacters.h"
#include "host/xmlutils/Serialise.h"
#include "tests/growth/Operation.h"
#include "tests/support/MxfBuilder.h"
#include "tools/corvid/Apply.h"
#include "tools/corvid/Check.h"
#include "tools/corvid/DictionaryCommand.h"
#include "tools/corvid/Diff.h"
#include "tools/corvid/ExitStatus.h"
#include "tools/corvid/FromXml.h"
#include "tools/corvid/Get.h"
#include "tools/corvid/Info.h"
#include "tools/corvid/Report.h"
#include "tools/corvid/Schema.h"
#include "tools/corvid/Set.h"
#include "tools/corvid/ToJson.h"
#include "tools/corvid/ToXml.h"
#include "tools/corvid/terminal/Messages.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <memory>
#include <xercesc/dom/DOM.hpp>

namespace Corvid::Testing {

namespace {

using Dictionary = MetaMetadata::Dictionary;
/// What the dictionaries of the input build on, as small as can be.
constexpr std::string_view smallDictionary =
    "namespace s377m urn:SMPTE:S377M\n"
    "namespace rp210 urn:SMPTE:RP210\n"
    "set s377m:InterchangeObject 06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.01.00 - abstract\n"
    "property rp210:InstanceUID 06.0e.2b.34.01.01.01.01.01.01.15.02.00.00.00.00 3c.0a UUID "
    "required 1\n"
    "set s377m:TimelineTrack 06.0e.2b.34.02.53.01.01.0d.01.01.01.01.01.3b.00 "
    "s377m:InterchangeObject concrete\n";

using PartitionHolder = Templates::auto_ptr<Metadata::PartitionMetadata>;

/// Runs a verb; its messages go into a file of the folder.
template <class Verb> int statusOf(const Subject& subject, Verb verb) {
    class FileSink final : public DataIO::DataSink {
    public:
        explicit FileSink(const std::filesystem::path& path) : file_(path, std::ios::binary) {}
        void write(const unsigned char* bytes, std::size_t count) override {
            file_.write(reinterpret_cast<const char*>(bytes), static_cast<std::streamsize>(count));
        }

    private:
        std::ofstream file_;
    } sink(subject.folder / "messages");
    Tool::Messages messages(sink, false);
    return Tool::guard([&] { verb(messages); }, messages);
}

template <class Verb> bool runVerb(const Subject& subject, Verb verb) {
    return statusOf(subject, verb) == Tool::exitDone;
}

/// Takes bytes without keeping them.
class NoSink final : public DataIO::DataSink {
public:
    void write(const unsigned char*, std::size_t) override {}
};

std::string readAll(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

bool isDictionary(const Subject& subject) { return subject.input.extension() == ".dict"; }

/// The MXF file that a verb reads: the input, or a small one where the input is a dictionary.
Tool::ClipOptions clipOf(const Subject& subject) {
    Tool::ClipOptions clip;
    clip.path = subject.input.string();
    if (isDictionary(subject)) {
        clip.path = (subject.folder / "sample.mxf").string();
        clip.dictionaries.files.push_back(subject.input.string());
    }
    return clip;
}

/// The input under as many names as a verb gets files: a path that comes again is read once.
std::vector<std::string> filesOf(const Subject& subject) {
    std::vector<std::string> files{subject.input.string()};
    while (files.size() != subject.files) {
        const auto file = subject.folder / (std::to_string(files.size()) + ".mxf");
        std::filesystem::create_hard_link(subject.input, file);
        files.push_back(file.string());
    }
    return files;
}

void writeSample(const Subject& subject) {
    if (isDictionary(subject)) {
        const Bytes bytes = MxfBuilder().add(headerPartition()).build();
        std::ofstream(subject.folder / "sample.mxf", std::ios::binary) << asText(bytes);
    }
}

Tool::ToXmlOptions toXmlOptions(const Subject& subject, bool referencesAsValues) {
    Tool::ToXmlOptions options;
    options.clip = clipOf(subject);
    options.batch.files = {options.clip.path};
    options.output = (subject.folder / "written.xml").string();
    options.referencesAsValues = referencesAsValues;
    return options;
}

/// The document that a reader is given: the input, or what to-xml makes of it.
std::filesystem::path documentOf(const Subject& subject, bool referencesAsValues) {
    if (subject.input.extension() == ".xml") {
        return subject.input;
    }
    writeSample(subject);
    Tool::ToXmlOptions options = toXmlOptions(subject, referencesAsValues);
    options.output = (subject.folder / "document.xml").string();
    options.replaceInvalid = true;
    runVerb(subject, [&](Tool::Messages& messages) { Tool::toXml(options, messages); });
    return options.output;
}

template <bool json> Work info(const Subject& subject) {
    return [subject] {
        Tool::InfoOptions options;
        options.clip = clipOf(subject);
        options.batch.files = {options.clip.path};
        options.json = json;
        options.text.all = true;
        return runVerb(subject, [&](Tool::Messages& messages) { Tool::info(options, messages); });
    };
}

template <bool referencesAsValues> Work toXml(const Subject& subject) {
    writeSample(subject);
    return [subject] {
        const auto options = toXmlOptions(subject, referencesAsValues);
        return runVerb(subject, [&](Tool::Messages& messages) { Tool::toXml(options, messages); });
    };
}

template <bool referencesAsValues> Work toJson(const Subject& subject) {
    return [subject] {
        Tool::ToJsonOptions options;
        options.clip = clipOf(subject);
        options.batch.files = {options.clip.path};
        options.output = (subject.folder / "written.json").string();
        options.referencesAsValues = referencesAsValues;
        return runVerb(subject, [&](Tool::Messages& messages) { Tool::toJson(options, messages); });
    };
}

Work report(const Subject& subject) {
    Tool::ReportOptions options;
    options.clip = clipOf(subject);
    options.batch.files = {options.clip.path};
    options.output = (subject.folder / "report.html").string();
    return [=] {
        return runVerb(subject, [&](Tool::Messages& messages) { Tool::report(options, messages); });
    };
}

template <bool referencesAsValues> Work fromXml(const Subject& subject) {
    Tool::FromXmlOptions options;
    options.path = documentOf(subject, referencesAsValues).string();
    options.output = (subject.folder / "written.mxf").string();
    options.dictionaries = clipOf(subject).dictionaries;
    return [subject, options] {
        return runVerb(subject,
                       [&](Tool::Messages& messages) { Tool::fromXml(options, messages); });
    };
}

Work get(const Subject& subject) {
    Tool::GetOptions options;
    options.clip = clipOf(subject);
    options.batch.files = {options.clip.path};
    options.questions = {"@external", "**[*/*/*/InstanceUID!=x]/*",
                         "**[*[last]/*[1]/InstanceUID!=x,last]/InstanceUID",
                         "Preface/**/*/*/InstanceUID", "InterchangeObject/InterchangeObject/*/*"};
    return [=] {
        return runVerb(subject, [&](Tool::Messages& messages) { Tool::get(options, messages); });
    };
}

/// Plans a change of every set; the status is that of a refusal where something would change.
Work setValues(const Subject& subject) {
    Tool::SetOptions options;
    options.clip = subject.input.string();
    options.all = true;
    options.edit.allowsTechnical = true;
    options.dryRun = true;
    options.assignments = {"**/GenerationUID=00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.07"};
    return [=] {
        return runVerb(subject, [&](Tool::Messages& messages) { Tool::set(options, messages); });
    };
}

/// Plans to apply the document of a clip to that clip: nothing is to change.
Work apply(const Subject& subject) {
    Tool::ApplyOptions options;
    options.clip = subject.input.string();
    options.document = documentOf(subject, false).string();
    options.dryRun = true;
    return [=] {
        return runVerb(subject, [&](Tool::Messages& messages) { Tool::apply(options, messages); });
    };
}

/// With what becomes of it, with new InstanceUIDs.
Work diff(const Subject& subject) {
    Tool::ToXmlOptions to;
    to.clip = clipOf(subject);
    to.batch.files = {to.clip.path};
    to.replaceInvalid = true;
    to.output = (subject.folder / "diff.xml").string();
    runVerb(subject, [&](Tool::Messages& messages) { Tool::toXml(to, messages); });
    Tool::FromXmlOptions from;
    from.path = to.output;
    from.output = (subject.folder / "renamed.mxf").string();
    from.identifiers = Editing::DocumentIdentifiers::fresh;
    runVerb(subject, [&](Tool::Messages& messages) { Tool::fromXml(from, messages); });
    Tool::DiffOptions options;
    options.before = subject.input.string();
    options.after = std::filesystem::exists(from.output) ? from.output : options.before;
    return [=] {
        // The two differ at least in their InstanceUIDs.
        return statusOf(subject, [&](Tool::Messages& messages) {
                   Tool::diff(options, messages);
               }) != Tool::exitNoFile;
    };
}

template <bool json> Work check(const Subject& subject) {
    return [subject, files = filesOf(subject)] {
        Tool::CheckOptions options;
        options.batch.files = files;
        options.json = json;
        options.all = json;
        return runVerb(subject, [&](Tool::Messages& messages) { Tool::check(options, messages); });
    };
}

const XMLUtils::SchemaValidator& validator() {
    static const auto made = XMLBuilder::documentValidator(*Dictionary::builtIn());
    return *made;
}

/// What --validate adds to a verb, but for the schema: that is compiled once.
Work validate(const Subject& subject) {
    const auto text = std::make_shared<std::string>(readAll(documentOf(subject, false)));
    return [text] {
        return validator()
            .validate(reinterpret_cast<const unsigned char*>(text->data()), text->size(), 21)
            .empty();
    };
}

PartitionHolder readMetadata(const Subject& subject) {
    mxf::NoWarnings warnings;
    return mxf::File(Templates::auto_ptr<DataIO::RandomAccessSource>(new DataIO::MemorySource(
                         reinterpret_cast<const unsigned char*>(subject.bytes.data()),
                         subject.bytes.size())),
                     Dictionary::builtIn(), warnings)
        .readMetadata()
        .metadata;
}

/// Shared, for a function that is copied can't own anything else.
std::shared_ptr<Metadata::PartitionMetadata> sharedMetadata(const Subject& subject) {
    return std::shared_ptr<Metadata::PartitionMetadata>(readMetadata(subject).release());
}

Work readFile(const Subject& subject) {
    return [subject] { return bool(readMetadata(subject)); };
}

Work writeFile(const Subject& subject) {
    return [metadata = sharedMetadata(subject)] {
        NoSink sink;
        mxf::writeHeaderPartition({}, mxf::HeaderMetadataWriter(*metadata), sink);
        return true;
    };
}

Work makeNodes(const Subject& subject) {
    return [metadata = sharedMetadata(subject)] {
        auto document = XMLBuilder::partition2XML(metadata.get(), false, false);
        const bool isThere = bool(document);
        static_cast<void>(document.release()); // the process ends soon enough
        return isThere;
    };
}

Work makeText(const Subject& subject) {
    return [metadata = sharedMetadata(subject)] {
        Utf16Text text;
        XMLBuilder::partition2XML(metadata.get(), false, false, XMLUtils::EncodingType::utf8, text);
        return !text.empty();
    };
}

Work serialise(const Subject& subject) {
    const auto metadata = sharedMetadata(subject);
    const std::shared_ptr<xercesc::DOMNode> document(
        XMLBuilder::partition2XML(metadata.get(), false, false).release(),
        [](xercesc::DOMNode* node) { node->release(); });
    return [document] {
        NoSink sink;
        XMLUtils::ReplaceInvalidCharacters invalid;
        XMLUtils::serialise(document.get(), XMLUtils::EncodingType::utf8,
                            XMLUtils::Layout::indented, invalid, sink);
        return true;
    };
}

Work readBuffer(const Subject& subject) {
    const auto text = std::make_shared<std::string>(readAll(documentOf(subject, false)));
    return [text] {
        Metadata::PartitionMetadata metadata(Dictionary::builtIn());
        XML2Partition::getPartitionMetadataFromBuffer(
            reinterpret_cast<const unsigned char*>(text->data()),
            static_cast<unsigned int>(text->size()), &metadata);
        return true;
    };
}

Work schema(const Subject& subject) {
    return [subject] {
        Tool::SchemaOptions options;
        options.dictionaries.files.push_back(subject.input.string());
        options.folder = (subject.folder / "schemas").string();
        return runVerb(subject, [&](Tool::Messages& messages) { Tool::schema(options, messages); });
    };
}

template <bool json> Work dictionary(const Subject& subject) {
    return [subject] {
        Tool::DictionaryOptions options;
        options.wanted = "g:Property0";
        options.dictionaries.files.push_back(subject.input.string());
        options.json = json;
        runVerb(subject, [&](Tool::Messages&) { Tool::dictionary(options); });
        return true; // also where nothing has that name
    };
}

/// The definitions of the input without the built-in ones, which take seconds to compile.
Work compileSchema(const Subject& subject) {
    return [subject] {
        Dictionary::Texts texts;
        texts.push_back({"growth.dict", subject.bytes});
        texts.push_back({"base.dict", smallDictionary});
        const XMLUtils::SchemaValidator made(
            XMLBuilder::schemaTexts(*Dictionary::fromTexts(texts)));
        return true;
    };
}

} // namespace

bool Operation::takes(InputKind kind) const {
    return std::find(kinds.begin(), kinds.end(), kind) != kinds.end();
}

const std::vector<Operation>& operations() {
    constexpr auto mxf = InputKind::mxf;
    constexpr auto xml = InputKind::xml;
    constexpr auto definitions = InputKind::dictionary;
    constexpr auto files = InputKind::files;
    static const std::vector<Operation> all = {
        {"info", {mxf}, info<false>},
        {"info --json", {mxf}, info<true>, true},
        {"get", {mxf}, get},
        {"set --dry-run", {mxf}, setValues},
        {"apply --dry-run", {mxf}, apply},
        {"diff", {mxf}, diff},
        {"to-xml", {mxf, definitions}, toXml<false>},
        {"to-xml --references values", {mxf}, toXml<true>, true},
        {"to-json", {mxf}, toJson<false>, true},
        {"to-json --references values", {mxf}, toJson<true>},
        {"report", {mxf}, report},
        {"from-xml", {mxf, xml, definitions}, fromXml<false>, true},
        {"from-xml, of values", {mxf}, fromXml<true>},
        {"--validate", {mxf, xml}, validate},
        {"check", {mxf, files}, check<false>},
        {"check --json --all", {mxf, files}, check<true>, true},
        {"mxf::File", {mxf}, readFile},
        {"mxf::writeHeaderPartition", {mxf}, writeFile},
        {"partition2XML, nodes", {mxf}, makeNodes},
        {"partition2XML, text", {mxf}, makeText},
        {"serialise", {mxf}, serialise},
        {"getPartitionMetadataFromBuffer", {mxf, xml}, readBuffer},
        {"schema", {definitions}, schema, true},
        {"schema, compiled", {definitions}, compileSchema},
        {"dictionary", {definitions}, dictionary<false>},
        {"dictionary --json", {definitions}, dictionary<true>, true},
    };
    return all;
}

void warmUp() {
    XMLUtils::Initializer::instance();
    Dictionary::builtIn();
    validator();
}

} // namespace Corvid::Testing
