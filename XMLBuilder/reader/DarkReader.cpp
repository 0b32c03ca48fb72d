#include "XMLBuilder/reader/DarkReader.h"

#include "XMLBuilder/CallerContract.h"
#include "XMLBuilder/format/HexBytes.h"
#include "XMLBuilder/format/NumberInput.h"
#include "XMLBuilder/reader/ReadSet.h"
#include "XMLBuilder/reader/nodes/NodeText.h"
#include "XMLBuilder/reader/strict/ValueRules.h"
#include "host/base/Exceptions.h"
#include "host/dataio/Memory.h"
#include "host/klv/BerInput.h"
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
    return attribute->value.data();
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

void addDarkSet(Metadata::PartitionMetadata& partition, const KLV::Key& key, int berLength,
                const FieldBytes& bytes) {
    DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
    KLV::Value value(source, source.remaining());
    partition.addDarkMetadataSet(Templates::auto_ptr<Metadata::DarkMetadataSet>(
        new Metadata::DarkMetadataSet(key, static_cast<unsigned char>(berLength), value)));
}

void readDarkMetadataSet(Metadata::PartitionMetadata& partition, const DocumentNode& element) {
    const Utf16Text keyText(XMLUtils::fromXml(requiredAttribute(element, Names::key)));
    const KLV::Key key(keyText.c_str(), Types::dottedHexadecimal);
    const int berLength = readNumber<int>(requiredAttribute(element, Names::berOctetCount));

    const char16_t* const text = firstValue(element);
    checkDarkValueText(text, Platform::wstringToString(keyText));
    addDarkSet(partition, key, berLength, decodeHex(text));
}

/// The same attributes, whatever their namespace: a document may have the prefix for another.
const DocumentNode* attributeOfDarkSet(const DocumentNode& element, const char16_t* qualified) {
    return findAttribute(element, Names::localPart(qualified), element.uri);
}

bool isOctetCount(const DocumentNode& attribute, Mistakes& mistakes) {
    if (!hasRightForm(Types::Identifiers::UInt8, attribute, EmptyParts::missing, mistakes)) {
        return false;
    }
    const auto octets = readNumber<unsigned>(std::u16string(trimmed(attribute.value)).c_str());
    const bool isRight = octets >= 1 && octets <= KLV::BerLength::greatestOctets;
    if (!isRight) {
        mistakes.add(attribute, quoted(attribute.value) + ", expected a whole number from 1 to " +
                                    std::to_string(KLV::BerLength::greatestOctets));
    }
    return isRight;
}

void readDarkSetStrictly(Reading& reading, Strictness& strictness, const DocumentNode& element) {
    strictness.checkAttributes(
        element, element.uri,
        {Names::localPart(Names::key), Names::localPart(Names::berOctetCount)});
    const auto* const key = attributeOfDarkSet(element, Names::key);
    const auto* const berLength = attributeOfDarkSet(element, Names::berOctetCount);
    if (key == nullptr || berLength == nullptr) {
        strictness.mistakes().add(element, "has no groups:Key or no groups:BEROctetCount, expected "
                                           "both");
        return;
    }
    Mistakes& mistakes = strictness.mistakes();
    bool isRight =
        hasRightForm(Types::Identifiers::UniversalLabel, *key, EmptyParts::missing, mistakes);
    isRight = isOctetCount(*berLength, mistakes) && isRight;
    isRight = hasRightForm(Types::Identifiers::DataStream, element, EmptyParts::values, mistakes) &&
              isRight;
    if (!isRight) {
        return;
    }
    const std::u16string keyText(trimmed(key->value));
    const std::u16string berText(trimmed(berLength->value));
    const Content content(element);
    const FieldBytes bytes = decodeHex(std::u16string(trimmed(content.text())).c_str());
    const KLV::Key darkKey(XMLUtils::fromXml(keyText.c_str()), Types::dottedHexadecimal);
    addDarkSet(reading.partition(), darkKey, readNumber<int>(berText.c_str()), bytes);
    reading.tags().keepTagsIn(darkKey, {bytes.data(), bytes.size()});
    strictness.enterDarkSet(element);
}

} // namespace

void readFloatingContainer(Reading& reading, const DocumentNode& container, SetList& sets) {
    if (Strictness* const strictness = reading.strictness()) {
        for (const auto* child = container.firstChild; child != nullptr; child = child->next) {
            if (child->kind == DocumentNode::Kind::text) {
                strictness->refuseStrayText(*child);
            }
        }
    }
    for (const auto* child = firstElement(container); child != nullptr;
         child = nextElement(*child)) {
        readChildOfContainer(reading, *child, sets);
    }
}

void readChildOfContainer(Reading& reading, const DocumentNode& child, SetList& sets) {
    if (readSet(reading, child, sets)) {
        return;
    }
    Strictness* const strictness = reading.strictness();
    if (strictness == nullptr) {
        readDarkMetadataSet(reading.partition(), child);
    } else if (!reading.isDarkSet(child)) {
        strictness->refuseSet(child);
    } else {
        reading.attempt(child, [&] { readDarkSetStrictly(reading, *strictness, child); });
    }
}

} // namespace Corvid::XMLBuilder
