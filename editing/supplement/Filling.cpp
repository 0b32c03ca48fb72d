#include "editing/supplement/Filling.h"

#include "editing/StoredBytes.h"
#include "editing/supplement/ToldValue.h"
#include "host/dictionary/MetaCollectionElement.h"
#include "host/types/Factories.h"
#include "host/types/FixedBytes.h"

#include <algorithm>

namespace Corvid::Editing {

namespace {

namespace Identifiers = Types::Identifiers;
using Identifiers::Identifier;
using Metadata::Element;

constexpr std::size_t collectionHead = 8;
constexpr std::size_t shortVersion = 9;

/// The type of the value or, of a collection, of its items; Unknown where the dictionary says none.
Identifier typeOf(const Element& element) {
    const auto* const definition = element.definition();
    return definition == nullptr ? Identifiers::Unknown
           : definition->isCollection()
               ? static_cast<const MetaMetadata::MetaCollectionElement*>(definition)->dataSubType()
               : definition->dataType();
}

bool isCollection(const Element& element) {
    const auto* const definition = element.definition();
    return definition != nullptr && definition->isCollection();
}

Types::u32 numberAt(const std::string& bytes, std::size_t offset) {
    return Types::readBigEndian<Types::u32>(viewOf(bytes).data + offset);
}

std::string withNumberAt(std::string bytes, std::size_t offset, std::size_t number) {
    Types::u8 encoded[4];
    Types::writeBigEndian(encoded, static_cast<Types::u32>(number));
    return bytes.replace(offset, sizeof encoded, reinterpret_cast<const char*>(encoded),
                         sizeof encoded);
}

/// The bytes of a collection with items of another size.
std::string withItemSize(const std::string& bytes, std::size_t size) {
    const std::size_t count = numberAt(bytes, 0);
    const std::size_t old = numberAt(bytes, 4);
    if (count == 0) {
        return withNumberAt(bytes, 4, size);
    }
    if (size <= old || (size - old) * count > greatestFilling) {
        return bytes;
    }
    std::string filled = withNumberAt(bytes.substr(0, collectionHead), 4, size);
    for (std::size_t i = 0; i != count; ++i) {
        filled.append(bytes, collectionHead + i * old, old).append(size - old, '\0');
    }
    return filled;
}

/// The bytes of a simple value with another size.
std::string withSize(Identifier type, std::string bytes, std::size_t size) {
    if (type == Identifiers::ProductVersion) {
        // The release, a number of 16 bits, then has 8.
        if (size == shortVersion && bytes.size() == shortVersion + 1 &&
            bytes[shortVersion - 1] == 0) {
            bytes.erase(shortVersion - 1, 1);
        }
    } else if (terminatorSize(type) != 0 && size > bytes.size() &&
               size - bytes.size() <= greatestFilling) {
        bytes.resize(size);
    }
    return bytes;
}

} // namespace

std::size_t terminatorSize(Identifier type) {
    return type == Identifiers::UTF16String ? 2 : type == Identifiers::ISO7String ? 1 : 0;
}

std::size_t terminatorSize(const Element& element) {
    const auto* const definition = element.definition();
    return definition == nullptr ? 0 : terminatorSize(definition->dataType());
}

std::optional<Filling> findFilling(const Element& element, const std::string& stored) {
    const Identifier type = typeOf(element);
    if (isCollection(element)) {
        // Items that have texts of unequal length can be read only together with their size.
        const bool hasTexts = terminatorSize(type) != 0 && numberAt(stored, 0) != 0;
        const auto told = bytesFromDocument(element, hasTexts ? XMLBuilder::EmptyParts::values
                                                              : XMLBuilder::EmptyParts::missing);
        const std::size_t size = numberAt(stored, 4);
        if (told && size <= Types::ByteRun::greatestSize && (hasTexts || numberAt(*told, 0) == 0) &&
            withItemSize(*told, size) == stored) {
            return Filling{size, true};
        }
        return std::nullopt;
    }
    const auto told = bytesFromDocument(element, XMLBuilder::EmptyParts::missing);
    if (told && withSize(type, *told, stored.size()) == stored) {
        return Filling{stored.size(), false};
    }
    return std::nullopt;
}

void fillUp(Element& element, std::size_t size) {
    const std::string bytes = bytesOf(element);
    const std::string filled =
        isCollection(element) ? withItemSize(bytes, size) : withSize(typeOf(element), bytes, size);
    if (filled != bytes && filled.size() <= Types::ByteRun::greatestSize) {
        element.parse(viewOf(filled));
    }
}

} // namespace Corvid::Editing
