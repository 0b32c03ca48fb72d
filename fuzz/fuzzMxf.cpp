// What is written of a file: documents and JSON, in both forms of references.

#include "XMLBuilder/XMLBuilder.h"
#include "XMLBuilder/json/MetadataJson.h"
#include "fuzz/FuzzInput.h"
#include "fuzz/Readable.h"
#include "host/base/Exceptions.h"
#include "host/dataio/Memory.h"
#include "host/mxf/HeaderMetadataReader.h"
#include "host/xmlutils/InvalidCharacters.h"
#include "host/xmlutils/Serialise.h"
#include "tests/support/LeaksByContract.h"

#include <xercesc/dom/DOMNode.hpp>

using namespace Corvid;

namespace {

void write(Metadata::PartitionMetadata& metadata, bool referencesAsValues) {
    Templates::auto_ptr<xercesc::DOMNode> document;
    {
        // Without Preface, the document is left to the process.
        const Testing::LeaksByContract leaks;
        document = XMLBuilder::partition2XML(&metadata, referencesAsValues, false);
    }
    if (document) {
        XMLUtils::ReplaceInvalidCharacters replaced;
        DataIO::Memory::MemoryDataSink sink;
        XMLUtils::serialise(document.get(), XMLUtils::EncodingType::utf8,
                            XMLUtils::Layout::indented, replaced, sink);
    }
}

/// JSON, with what reports add to it or without.
void writeJson(Metadata::PartitionMetadata& metadata, bool referencesAsValues) {
    const auto prefaces = metadata.find(Metadata::Structural::StructuralMetadataKeys::preface());
    if (prefaces.empty()) {
        return;
    }
    const mxf::SetOffsets unknown;
    for (const bool isForReports : {false, true}) {
        XMLBuilder::JsonContent content;
        content.offsets = isForReports ? &unknown : nullptr;
        content.mostBytes = isForReports ? 8 : content.mostBytes;
        DataIO::Memory::MemoryDataSink sink;
        writeJson(
            XMLBuilder::DocumentPlan(metadata, *prefaces.front(), {referencesAsValues, false}),
            content, sink);
        const std::string text(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
        Fuzzing::expectReadable(text, "JSON");
        Fuzzing::expectJson(text, "JSON");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    for (const bool referencesAsValues : {false, true}) {
        try {
            const auto metadata = Fuzzing::readMxf(bytes, size);
            writeJson(*metadata, referencesAsValues);
            write(*metadata, referencesAsValues);
        } catch (const Exceptions::BaseException&) {
            // Refused, as it should be.
        }
    }
    return 0;
}
