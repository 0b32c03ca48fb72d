#include "XMLBuilder/writer/DarkWriter.h"

#include "XMLBuilder/format/NumberText.h"
#include "host/base/Hex.h"
#include "host/xmlutils/XmlText.h"

namespace Corvid::XMLBuilder {

void writeDarkMetadata(const DocumentPlan::Floating& dark, DocumentSink& sink) {
    const DecimalText berLength(int{dark.berLength});
    const Utf16Text key = dark.key->toString(Types::dottedHexadecimal);
    const DocumentSink::Attribute attributes[] = {
        {{dark.uri, Names::berOctetCount}, {berLength.c_str(), berLength.size()}},
        {{dark.uri, Names::key}, XMLUtils::toXml(key)}};
    sink.startElement({dark.uri, Names::darkMetadata}, attributes, 2);
    if (dark.hasValue) {
        sink.text(Hex::encoded<std::u16string>(dark.value.data, dark.value.size, Hex::upper));
    }
    sink.endElement();
}

} // namespace Corvid::XMLBuilder
