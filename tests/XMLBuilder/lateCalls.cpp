// Calls the library from the destructor of a global object, when its own constants are gone. The
// exit status says whether that worked.

#include "XMLBuilder/XMLBuilder.h"
#include "host/dictionary/Dictionary.h"
#include "host/metadata/PartitionMetadata.h"

#include <xercesc/dom/DOM.hpp>

#include <cstdlib>

using namespace Corvid;

namespace {

constexpr int failed = 1;

struct CallsAtTheEnd {
    Metadata::PartitionMetadata partition{MetaMetadata::Dictionary::builtIn()};

    CallsAtTheEnd() {
        partition.createMetadataSet(Metadata::Structural::StructuralMetadataKeys::preface());
    }
    CallsAtTheEnd(const CallsAtTheEnd&) = delete;
    CallsAtTheEnd& operator=(const CallsAtTheEnd&) = delete;

    ~CallsAtTheEnd() {
        Utf16Text text;
        XMLBuilder::partition2XML(nullptr, false, false, XMLUtils::EncodingType::utf8, text);
        if (XMLBuilder::partition2XML(nullptr, false, false) || !text.empty()) {
            std::_Exit(failed);
        }
        XMLBuilder::partition2XML(&partition, false, false, XMLUtils::EncodingType::utf8, text);
        if (text != early) {
            std::_Exit(failed);
        }
    }

    Utf16Text early;
};

CallsAtTheEnd callsAtTheEnd;

} // namespace

int main() {
    // What the library keeps is made by this call or before it, so it is gone before the object.
    XMLBuilder::partition2XML(&callsAtTheEnd.partition, false, false, XMLUtils::EncodingType::utf8,
                              callsAtTheEnd.early);
    const bool right = XMLBuilder::getPrefix().size() == 5 &&
                       XMLBuilder::getNamespaceURI().size() == 15 && !callsAtTheEnd.early.empty();
    return right ? 0 : failed;
}
