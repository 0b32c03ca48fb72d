// The way of `corvid from-xml`: a document with its processing instructions, to a file.

#include "editing/DocumentMetadata.h"
#include "fuzz/FuzzInput.h"
#include "fuzz/Readable.h"
#include "host/base/Exceptions.h"
#include "host/dataio/Memory.h"
#include "tests/support/HeaderPartition.h"
#include "tools/corvid/reports/DocumentReport.h"
#include "tools/corvid/terminal/Messages.h"

#include <iterator>

using namespace Corvid;

namespace {

/// The most bytes of messages for each byte of the document, and beside them: a message names what
/// it is about, and of a kind there are not many.
constexpr std::size_t times = 16;
constexpr std::size_t constant = 64 * 1024;

std::size_t countSets(const Metadata::PartitionMetadata& metadata) {
    return metadata.size() +
           static_cast<std::size_t>(std::distance(metadata.darkBegin(), metadata.darkEnd()));
}

/// What is written can be read.
void expectFile(const std::vector<unsigned char>& bytes, std::size_t sets) {
    try {
        if (countSets(*Fuzzing::readMxf(bytes.data(), bytes.size())) != sets) {
            Fuzzing::fail("the file that was written has another number of sets");
        }
    } catch (const Exceptions::BaseException& error) {
        Fuzzing::fail("the file that was written can't be read: " +
                      Platform::toUtf8(error.message()));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    DataIO::Memory::MemoryDataSource document(bytes, size);
    DataIO::Memory::MemoryDataSink lines;
    Tool::Messages messages(lines, false);
    messages.setFile("a\ndocument.xml");
    try {
        const auto read = Editing::readDocument(document, MetaMetadata::Dictionary::builtIn(),
                                                Editing::DocumentIdentifiers::written);
        Tool::report(read, messages);
        expectFile(Testing::headerPartitionOf(*read.metadata), countSets(*read.metadata));
    } catch (const Editing::DocumentMistakes& refusal) {
        Tool::report(refusal, messages);
    } catch (const Exceptions::BaseException& error) {
        messages.error(Platform::toUtf8(error.message()));
    }
    messages.flush();
    const std::string text(lines.rawBuffer(), lines.rawBuffer() + lines.serializedSize());
    Fuzzing::expectReadable(text, "the messages");
    Fuzzing::expectBounded(text, size, times, constant, "the messages");
    return 0;
}
