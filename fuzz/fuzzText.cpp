#include "XMLBuilder/format/HexBytes.h"
#include "XMLBuilder/format/NumberInput.h"
#include "fuzz/FuzzInput.h"
#include "host/base/Exceptions.h"
#include "host/base/Hex.h"
#include "host/base/IdentifierText.h"

#include <cstring>
#include <locale>
#include <regex>
#include <sstream>
#include <vector>

using namespace Corvid;

namespace {

/// The number that a stream reads, with which the reader must agree.
template <class Number> void checkNumber(const std::u16string& text) {
    std::wistringstream stream(std::wstring(text.begin(), text.end()));
    stream.imbue(std::locale::classic());
    Number expected = 0;
    stream >> expected;
    if (XMLBuilder::readNumber<Number>(text.c_str()) != expected) {
        Fuzzing::fail("a number is read unlike a stream reads it");
    }
}

/// The bytes of pairs of digits, got one pair at a time.
std::vector<unsigned char> bytesOfPairs(const std::string& text, std::size_t step) {
    std::vector<unsigned char> bytes;
    for (std::size_t i = 0; i + 2 <= text.size(); i += step) {
        bytes.push_back(static_cast<unsigned char>(std::stoul(text.substr(i, 2), nullptr, 16)));
    }
    return bytes;
}

/// Whether a function takes a text.
template <class Read> bool isTaken(Read read) {
    try {
        read();
        return true;
    } catch (const Exceptions::BaseException&) {
        return false;
    }
}

/// The text in bytes; a code unit that is no ASCII becomes a question mark, which no form has.
std::string toAscii(const std::u16string& text) {
    std::string ascii;
    for (const char16_t unit : text) {
        ascii += unit < 0x80 ? static_cast<char>(unit) : '?';
    }
    return ascii;
}

template <std::size_t Size> void checkIdentifier(const std::u16string& text) {
    static const std::regex form("[0-9a-fA-F]{2}(\\.[0-9a-fA-F]{2}){" + std::to_string(Size - 1) +
                                 "}");
    const std::string ascii = toAscii(text);
    const Utf16Text units(text.begin(), text.end());
    unsigned char bytes[Size];
    const bool taken = isTaken([&] { Types::fromDottedHexadecimal(units.c_str(), bytes, Size); });
    // The regular expressions of the library recurse, so only what may match is given to them.
    const bool expected = ascii.size() == 3 * Size - 1 && std::regex_match(ascii, form);
    if (taken != expected) {
        Fuzzing::fail("an identifier is taken that should not be, or the other way round");
    }
    if (taken) {
        const auto pairs = bytesOfPairs(ascii, 3);
        if (!std::equal(pairs.begin(), pairs.end(), bytes, bytes + Size)) {
            Fuzzing::fail("an identifier has other bytes than its digits");
        }
        std::string lower = ascii;
        for (char& digit : lower) {
            digit = static_cast<char>(std::tolower(static_cast<unsigned char>(digit)));
        }
        if (Platform::toUtf8(Types::toDottedHexadecimal(bytes, Size)) != lower) {
            Fuzzing::fail("an identifier is written unlike it was read");
        }
    }
}

void checkHex(const std::u16string& text) {
    const std::string ascii = toAscii(text);
    const bool expected = ascii.size() % 2 == 0 &&
                          ascii.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
    XMLBuilder::FieldBytes bytes;
    const bool taken = isTaken([&] { bytes = XMLBuilder::parseHexBytes(text.c_str()); });
    if (taken != expected) {
        Fuzzing::fail("hexadecimal text is taken that should not be, or the other way round");
    }
    if (taken) {
        const auto pairs = bytesOfPairs(ascii, 2);
        if (!std::equal(pairs.begin(), pairs.end(), bytes.begin(), bytes.end())) {
            Fuzzing::fail("bytes are other than their digits");
        }
        const auto again = Hex::encoded<std::u16string>(bytes.data(), bytes.size(), Hex::upper);
        if (XMLBuilder::parseHexBytes(again.c_str()) != bytes) {
            Fuzzing::fail("bytes are written unlike they were read");
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    // As ASCII and as code units, up to the first zero as the functions take it.
    std::u16string ascii(bytes, bytes + size);
    std::u16string units(size / 2, u'\0');
    std::memcpy(units.data(), bytes, size / 2 * 2);
    for (std::u16string* text : {&ascii, &units}) {
        text->resize(std::char_traits<char16_t>::length(text->c_str()));
        checkNumber<std::uint16_t>(*text);
        checkNumber<std::uint32_t>(*text);
        checkNumber<std::uint64_t>(*text);
        checkNumber<std::int16_t>(*text);
        checkNumber<std::int32_t>(*text);
        checkNumber<std::int64_t>(*text);
        checkIdentifier<2>(*text);
        checkIdentifier<16>(*text);
        checkIdentifier<32>(*text);
        checkIdentifier<64>(*text);
        checkHex(*text);
    }
    return 0;
}
