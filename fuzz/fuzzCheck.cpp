// What `corvid check` prints about a file, and whether its verdict is right.

#include "editing/RoundTrip.h"
#include "editing/WrittenDocument.h"
#include "fuzz/FuzzInput.h"
#include "fuzz/PlainSets.h"
#include "fuzz/Readable.h"
#include "host/base/Exceptions.h"
#include "host/dataio/Memory.h"
#include "host/xmlutils/InvalidCharacters.h"
#include "tests/support/HeaderPartition.h"
#include "tools/corvid/input/Clip.h"
#include "tools/corvid/reports/CheckJson.h"
#include "tools/corvid/terminal/Messages.h"
#include "tools/corvid/xml/LenientDocument.h"
#include "tools/corvid/xml/XercesFailures.h"

using namespace Corvid;

namespace {

/// A name that must not break a line.
const std::string fileName = "a\nclip\033[31m.mxf";

DataIO::MemorySource* sourceOf(const std::uint8_t* bytes, std::size_t size) {
    return new DataIO::MemorySource(bytes, size, fileName);
}

/// The sets of the metadata of a file, as bytes.
Fuzzing::PlainMetadata plainly(const std::uint8_t* bytes, const mxf::HeaderMetadata& header) {
    return Fuzzing::readPlainly({reinterpret_cast<const char*>(bytes + header.begin),
                                 static_cast<std::size_t>(header.end - header.begin)});
}

/// The file that to-xml and from-xml make of metadata.
std::vector<unsigned char> throughXml(Metadata::PartitionMetadata& metadata) {
    DataIO::Memory::MemoryDataSink text;
    XMLUtils::ReplaceInvalidCharacters invalid;
    Editing::WrittenDocument(metadata, {})
        .serialise(XMLUtils::EncodingType::utf8, XMLUtils::Layout::indented, invalid, text);
    const auto document = Tool::readLeniently(text.rawBuffer(), text.serializedSize(),
                                              MetaMetadata::Dictionary::builtIn(),
                                              Editing::DocumentIdentifiers::written);
    return Testing::headerPartitionOf(*document.metadata);
}

void expectTrueVerdict(const std::uint8_t* bytes, const mxf::HeaderMetadata& header) {
    const auto again = throughXml(*header.metadata);
    mxf::NoWarnings warnings;
    mxf::File file(
        Templates::auto_ptr<DataIO::RandomAccessSource>(sourceOf(again.data(), again.size())),
        MetaMetadata::Dictionary::builtIn(), warnings);
    Fuzzing::expectSameSets(plainly(bytes, header), plainly(again.data(), file.readMetadata()));
}

Tool::CheckedFile check(const std::uint8_t* bytes, std::size_t size, Tool::Messages& messages) {
    Tool::CheckedFile checked;
    checked.file = messages.file();
    try {
        mxf::File file(Templates::auto_ptr<DataIO::RandomAccessSource>(sourceOf(bytes, size)),
                       MetaMetadata::Dictionary::builtIn(), messages);
        const mxf::HeaderMetadata header = Tool::readMetadata(file, {});
        checked.cutOffAt = header.cutOffAt;
        Tool::translateXerces(
            [&] { checked.comparison = Editing::compareWithRoundTrip(*header.metadata); });
        checked.result = Tool::resultOf(checked.comparison, header.cutOffAt.has_value());
        if (checked.result == Tool::CheckResult::lossless) {
            expectTrueVerdict(bytes, header);
        }
    } catch (const Exceptions::BaseException& error) {
        checked.result = Tool::CheckResult::refused;
        messages.error(Platform::toUtf8(error.message()));
    }
    checked.error = messages.lastError();
    checked.warnings = messages.warnings();
    return checked;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    DataIO::Memory::MemoryDataSink lines;
    Tool::Messages messages(lines, false);
    messages.setFile(fileName);
    const Tool::CheckedFile checked = check(bytes, size, messages);
    messages.flush();
    Fuzzing::expectReadable({lines.rawBuffer(), lines.rawBuffer() + lines.serializedSize()},
                            "the messages");
    const std::string text = toText(checked, false);
    Fuzzing::expectReadable(text, "the text");
    if (Fuzzing::withoutColours(toText(checked, true)) != text) {
        Fuzzing::fail("colours change the text");
    }
    DataIO::Memory::MemoryDataSink sink;
    Tool::CheckTally tally;
    tally.add(checked.result);
    Tool::CheckJson json(sink);
    json.add(checked);
    json.finish(tally);
    Fuzzing::expectJson({sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize()}, "JSON");
    return 0;
}
