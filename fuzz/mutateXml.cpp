// How libFuzzer changes a document: in its elements, attributes, namespaces, values and processing
// instructions, so that it stays well-formed as a rule. A document whose bytes are changed blindly
// is hardly ever read beyond its first wrong bracket.

#include "fuzz/xml/Changes.h"
#include "fuzz/xml/Encoding.h"

#include <algorithm>

namespace {

using namespace Corvid::Fuzzing;

void changeEncoding(DecodedText& text, Random& random) {
    constexpr const char* names[] = {"UTF-8",        "UTF-16", "UTF-16LE", "UTF-16BE", "ISO-8859-1",
                                     "windows-1252", "ASCII",  "UCS-4",    "nonsense", "IBM037"};
    if (onceIn(2, random)) {
        text.encoding = static_cast<Encoding>(below(encodingCount, random));
        return;
    }
    // What the declaration says need not be so.
    constexpr std::string_view mark = "encoding=\"";
    const auto at = text.text.find(mark);
    const auto end = at == std::string::npos ? at : text.text.find('"', at + mark.size());
    if (end != std::string::npos) {
        text.text.replace(at + mark.size(), end - at - mark.size(), oneOf(names, random));
    }
    if (onceIn(2, random)) {
        text.encoding = onceIn(2, random) ? Encoding::latin1 : Encoding::bytes;
    }
}

template <class Changes> void applyOne(const Changes& changes, Pieces& pieces, Random& random) {
    oneOf(changes, random).apply(pieces, random);
}

void change(DecodedText& text, Random& random) {
    if (onceIn(40, random)) {
        changeEncoding(text, random);
        return;
    }
    Pieces pieces = takeApart(text.text);
    switch (below(8, random)) {
    case 0:
    case 1:
    case 2:
        applyOne(elementChanges, pieces, random);
        break;
    case 3:
        applyOne(attributeChanges, pieces, random);
        break;
    case 4:
    case 5:
        applyOne(textChanges, pieces, random);
        break;
    case 6:
        applyOne(instructionChanges, pieces, random);
        break;
    default:
        applyOne(namespaceChanges, pieces, random);
    }
    text.text = join(pieces);
}

/// Puts a document where libFuzzer wants it, unless it is too long or empty.
bool store(const DecodedText& text, std::uint8_t* bytes, std::size_t greatestSize,
           std::size_t& size) {
    const std::string encoded = encode(text);
    if (encoded.empty() || encoded.size() > greatestSize) {
        return false;
    }
    std::copy(encoded.begin(), encoded.end(), bytes);
    size = encoded.size();
    return true;
}

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* bytes, std::size_t size,
                                               std::size_t greatestSize, unsigned seed) {
    Random random(seed);
    DecodedText text = decode(bytes, size);
    if (onceIn(16, random)) {
        return LLVMFuzzerMutate(bytes, size, greatestSize);
    }
    change(text, random);
    return store(text, bytes, greatestSize, size) ? size
                                                  : LLVMFuzzerMutate(bytes, size, greatestSize);
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* first, std::size_t firstSize,
                                                 const std::uint8_t* second, std::size_t secondSize,
                                                 std::uint8_t* out, std::size_t greatestSize,
                                                 unsigned seed) {
    Random random(seed);
    DecodedText text = decode(first, firstSize);
    Pieces pieces = takeApart(text.text);
    takeOver(pieces, takeApart(decode(second, secondSize).text), random);
    text.text = join(pieces);
    std::size_t size = 0;
    return store(text, out, greatestSize, size) ? size : 0;
}
