#include "XMLBuilder/XMLBuilder.h"
#include "fuzz/FuzzInput.h"
#include "host/base/Exceptions.h"
#include "host/dataio/Memory.h"
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

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    for (const bool referencesAsValues : {false, true}) {
        try {
            write(*Fuzzing::readMxf(bytes, size), referencesAsValues);
        } catch (const Exceptions::BaseException&) {
            // Refused, as it should be.
        }
    }
    return 0;
}
