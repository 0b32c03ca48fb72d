#include "XMLBuilder/reader/DarkReader.h"

#include "XMLBuilder/CallerContract.h"
#include "XMLBuilder/format/HexBytes.h"
#include "XMLBuilder/format/NumberInput.h"
#include "XMLBuilder/reader/ReadSet.h"
#include "host/base/Exceptions.h"
#include "host/dataio/Memory.h"
#include "host/metadata/PartitionMetadata.h"
#include "host/xmlutils/XmlText.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace Corvid::XMLBuilder {

namespace {

using namespace CallerContract;

const char16_t* requiredAttribute(const DocumentNode& element, const char16_t* name) {
    const DocumentNode* const attribute = findAttribute(element, name);
    if (attribute == nullptr) {
        throw Exceptions::InvalidFormat(
            "dark set '" + Platform::toUtf8(XMLUtils::fromXml(element.name)) + "': no attribute '" +
                Platform::toUtf8(XMLUtils::fromXml(name)) + "', expected one",
            File::reader, __LINE__);
    }
    return attribute->value;
}

void checkDarkValueText(std::u16string_view text, const std::string& keyText) {
    const std::string set = "DarkMetadataSet with key='" + keyText + "' value ";
    if (text.size() % 2 != 0) {
        throw Exceptions::InvalidFormat((set + Text::oddLength).c_str(), File::reader,
                                        Line::darkValueOfOddLength);
    }
    if (!std::all_of(text.begin(), text.end(), isHexDigit)) {
        throw Exceptions::InvalidFormat((set + Text::noDigits).c_str(), File::reader,
                                        Line::darkValueWithoutDigits);
    }
}

void readDarkMetadataSet(Metadata::PartitionMetadata& partition, const DocumentNode& element) {
    const Utf16Text keyText(XMLUtils::fromXml(requiredAttribute(element, Names::key)));
    const KLV::Key key(keyText.c_str(), Types::dottedHexadecimal);
    const int berLength = readNumber<int>(requiredAttribute(element, Names::berOctetCount));

    const char16_t* const text = firstValue(element);
    checkDarkValueText(text, Platform::wstringToString(keyText));
    const FieldBytes bytes = decodeHex(text);
    DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
    KLV::Value value(source, source.remaining());
    partition.addDarkMetadataSet(Templates::auto_ptr<Metadata::DarkMetadataSet>(
        new Metadata::DarkMetadataSet(key, static_cast<unsigned char>(berLength), value)));
}

} // namespace

void readFloatingContainer(Reading& reading, const DocumentNode& container, SetList& sets) {
    for (const auto* child = firstElement(container); child != nullptr;
         child = nextElement(*child)) {
        if (!readSet(reading, *child, sets)) {
            readDarkMetadataSet(reading.partition(), *child);
        }
    }
}

} // namespace Corvid::XMLBuilder
