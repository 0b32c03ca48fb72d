// What `corvid info` prints about a file, for people and for programs.

#include "fuzz/FuzzInput.h"
#include "fuzz/Readable.h"
#include "host/base/Exceptions.h"
#include "host/dataio/Memory.h"
#include "inspection/Summary.h"
#include "tools/corvid/input/Clip.h"
#include "tools/corvid/reports/SummaryReport.h"
#include "tools/corvid/terminal/Messages.h"

#include <algorithm>

using namespace Corvid;

namespace {

/// A name that must not break a line.
const std::string fileName = "a\nclip\033[31m.mxf";

/// The most bytes that a result has for each byte of the file, and for an empty file. Of a file of
/// nothing but labels JSON has 15 times its size, and more where descriptors nest: each key is on a
/// line of its own, and indented.
constexpr std::size_t times = 64;
constexpr std::size_t constant = 8192;
/// The most bytes of warnings, however many there are to say.
constexpr std::size_t mostWarnings = 512 * 1024;

void expectSummary(const Inspection::Summary& summary, const Tool::WarningLog& warnings,
                   std::size_t size) {
    Tool::SummaryText what;
    const std::string brief = Tool::toText(summary, warnings, what);
    Fuzzing::expectReadable(brief, "the short text");
    const auto lines = std::count(brief.begin(), brief.end(), '\n');
    if (static_cast<std::size_t>(lines) > Tool::mostLines) {
        Fuzzing::fail("the short text is long");
    }
    what.all = what.labels = true;
    const std::string text = Tool::toText(summary, {}, what);
    Fuzzing::expectReadable(text, "the text");
    Fuzzing::expectBounded(text, size, times, constant, "the text");
    what.colours = true;
    if (Fuzzing::withoutColours(Tool::toText(summary, {}, what)) != text) {
        Fuzzing::fail("colours change the text");
    }
    Fuzzing::expectBounded(Tool::toJson(summary, {}), size, times, constant, "JSON");
    const std::string json = Tool::toJson(summary, warnings);
    Fuzzing::expectJson(json, "JSON");
    Fuzzing::expectBounded(json, size, times, mostWarnings, "JSON with warnings");
}

using Dictionary = Templates::SharedPtr<MetaMetadata::Dictionary>;

/// @return the number of partitions.
std::size_t summarise(const std::uint8_t* bytes, std::size_t size, const char* partition,
                      const Dictionary& dictionary = MetaMetadata::Dictionary::builtIn()) {
    DataIO::Memory::MemoryDataSink lines;
    Tool::Messages messages(lines, false);
    messages.setFile(fileName);
    std::size_t partitions = 0;
    try {
        mxf::File file(Templates::auto_ptr<DataIO::RandomAccessSource>(
                           new DataIO::MemorySource(bytes, size, fileName)),
                       dictionary, messages);
        partitions = file.partitions().size();
        Tool::ClipOptions clip;
        clip.partition = partition;
        const mxf::HeaderMetadata header = readMetadata(file, clip);
        expectSummary(Inspection::summarise(file, header), messages.warnings(), size);
    } catch (const Exceptions::BaseException& error) {
        const std::string text = Platform::toUtf8(error.message());
        Fuzzing::expectJson(Tool::failureJson(fileName, messages.warnings(), text), "JSON");
        messages.error(text);
    }
    messages.flush();
    const std::string text(lines.rawBuffer(), lines.rawBuffer() + lines.serializedSize());
    Fuzzing::expectReadable(text, "the messages");
    Fuzzing::expectBounded(text, 0, 0, mostWarnings, "the messages");
    return partitions;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const Dictionary registered = Tool::loadDictionary({{}, true});
    summarise(bytes, size, "auto", registered);
    // A file with one partition is the same whichever is asked for.
    if (summarise(bytes, size, "auto") > 1) {
        for (const char* partition : {"header", "footer", "1"}) {
            summarise(bytes, size, partition);
        }
    }
    return 0;
}
