#include "tools/corvid/Schema.h"
#include "tools/corvid/xml/DocumentSchema.h"
#include "tools/corvid/xml/LenientDocument.h"
#include "tools/corvid/xml/XercesFailures.h"
#include "tools/corvid/xml/XmlModule.h"

namespace Corvid::Tool {

namespace {

void validate(const unsigned char* bytes, std::size_t length,
              const MetaMetadata::Dictionary& dictionary, Messages& messages) {
    translateXerces([&] { validateDocument(bytes, length, dictionary, messages); });
}

} // namespace

} // namespace Corvid::Tool

extern "C" __attribute__((visibility("default"))) const Corvid::Tool::XmlModule* corvidXmlModule() {
    using namespace Corvid::Tool;
    static constexpr XmlModule module{&schema, &validate, &readLeniently};
    return &module;
}
