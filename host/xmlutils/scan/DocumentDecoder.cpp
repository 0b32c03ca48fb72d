#include "host/xmlutils/scan/DocumentDecoder.h"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <xercesc/internal/XMLReader.hpp>
#include <xercesc/util/BinMemInputStream.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLString.hpp>

namespace Corvid::XMLUtils {

namespace {

using namespace xercesc;

constexpr std::u16string_view declarationBegin = u"<?xml";

/// A reader such as Xerces-C will use for the document. It sees the first block only.
std::unique_ptr<XMLReader> makeReader(const XMLByte* bytes, std::size_t count,
                                      const XMLCh* encoding) {
    MemoryManager* const memory = XMLPlatformUtils::fgMemoryManager;
    auto stream = std::make_unique<BinMemInputStream>(bytes, count,
                                                      BinMemInputStream::BufOpt_Reference, memory);
    const auto make = [&](auto... forced) {
        // The reader owns the stream as soon as it is constructed.
        auto reader = std::unique_ptr<XMLReader>(
            new (memory) XMLReader(u"", u"", stream.get(), forced..., XMLReader::RefFrom_NonLiteral,
                                   XMLReader::Type_General, XMLReader::Source_External));
        static_cast<void>(stream.release());
        return reader;
    };
    return encoding == nullptr ? make() : make(encoding);
}

/// The XML declaration, at which the reader then is; empty where the document has none.
std::u16string readDeclaration(XMLReader& reader) {
    std::u16string text;
    XMLCh unit = 0;
    while (unit != '>' && reader.getNextChar(unit)) {
        text += unit;
        const auto compared = std::min(text.size(), declarationBegin.size());
        const bool isOther = text.size() == compared + 1 && unit != ' ' && unit != '\t' &&
                             unit != '\n'; // such as <?xml-stylesheet
        if (isOther || text.compare(0, compared, declarationBegin, 0, compared) != 0) {
            return {};
        }
    }
    return text;
}

/// What the XML declaration gives as, for example, `encoding="UTF-8"`; empty where it does not.
std::u16string declared(const std::u16string& declaration, std::u16string_view what) {
    constexpr std::u16string_view quotes = u"\"'";
    const std::size_t begin = declaration.find_first_of(quotes, declaration.find(what));
    if (begin == std::u16string::npos) {
        return {};
    }
    const std::size_t end = declaration.find(declaration[begin], begin + 1);
    return end == std::u16string::npos ? std::u16string()
                                       : declaration.substr(begin + 1, end - begin - 1);
}

bool startsWithMark(const XMLByte* bytes, std::size_t count) {
    return count >= XMLRecognizer::fgUTF8BOMLen &&
           std::memcmp(bytes, XMLRecognizer::fgUTF8BOM, XMLRecognizer::fgUTF8BOMLen) == 0;
}

/// In bytes, with what comes in front of one in an encoding that switches between character sets.
constexpr std::size_t longestCharacter = 64;

/// Makes code units of bytes below 128.
/// @return whether all are.
bool widen(const XMLByte* bytes, std::size_t count, char16_t* units) {
    // Copies of known size, of which a compiler makes one step.
    std::array<XMLByte, 16> from{};
    std::array<char16_t, from.size()> to{};
    unsigned int all = 0;
    for (; count >= from.size(); count -= from.size()) {
        std::memcpy(from.data(), bytes, sizeof from);
        for (std::size_t i = 0; i != from.size(); ++i) {
            to[i] = from[i];
        }
        for (std::size_t i = 0; i != from.size(); ++i) {
            all |= from[i];
        }
        std::memcpy(units, to.data(), sizeof to);
        bytes += from.size();
        units += from.size();
    }
    for (; count != 0; --count) {
        all |= *bytes;
        *units++ = *bytes++;
    }
    return all < 0x80;
}

} // namespace

void DocumentDecoder::take(const XMLByte* bytes, std::size_t count) {
    block_ = bytes;
    blockSize_ = count;
    taken_ = 0;
    if (!isBegun_ && count != 0) {
        isBegun_ = true;
        try {
            begin();
        } catch (const XMLException&) {
            isEnded_ = true; // as it will be for the parser
        }
    }
}

void DocumentDecoder::begin() {
    const auto reader = makeReader(block_, blockSize_, forced_);
    // Of this mark the reader knows nothing when it is asked for its place.
    const bool hasMark = forced_ == nullptr && startsWithMark(block_, blockSize_);
    taken_ = hasMark ? XMLRecognizer::fgUTF8BOMLen : 0;
    opening_ = readDeclaration(*reader);
    if (!opening_.empty()) {
        const std::size_t markSize = taken_;
        taken_ = openingSize_ = markSize + static_cast<std::size_t>(reader->getSrcOffset());
        const std::u16string encoding = declared(opening_, u"encoding");
        hasMoreLineEnds_ = declared(opening_, u"version") == u"1.1";
        reader->setXMLVersion(hasMoreLineEnds_ ? XMLReader::XMLV1_1 : XMLReader::XMLV1_0);
        if (!encoding.empty() && !XMLString::isValidEncName(encoding.c_str())) {
            isEnded_ = true; // The parser refuses the name, and the reader must not get it.
            return;
        }
        if (!encoding.empty()) {
            // One that can't be, such as UTF-16 in bytes, is left to the parser, which goes on.
            static_cast<void>(reader->setEncoding(encoding.c_str()));
        }
        // With blanks of some kinds in the declaration a reader decodes more before it knows.
        for (XMLCh unit = 0; reader->charsLeftInBuffer() != 0 && reader->getNextChar(unit);) {
            opening_ += unit;
        }
        taken_ = markSize + static_cast<std::size_t>(reader->getSrcOffset());
    }
    const XMLCh* const name = reader->getEncodingStr();
    const auto known = XMLRecognizer::encodingForName(name);
    keepsAscii_ = known == XMLRecognizer::UTF_8 || known == XMLRecognizer::US_ASCII;
    XMLTransService::Codes code{};
    transcoder_.reset(XMLPlatformUtils::fgTransService->makeNewTranscoderFor(
        name, code, sliceSize, XMLPlatformUtils::fgMemoryManager));
    isEnded_ = transcoder_ == nullptr;
}

std::u16string_view DocumentDecoder::next() {
    givesOpening_ = !opening_.empty() && !isOpeningGiven_;
    if (givesOpening_) {
        isOpeningGiven_ = true;
        return opening_;
    }
    std::size_t count = 0;
    do {
        refill();
        count = decode();
    } while (count == 0 && decoded_ != 0); // what switches between character sets is no text
    return {units_.data(), count};
}

std::size_t DocumentDecoder::bytesBefore(std::size_t unit) const {
    if (givesOpening_) {
        return openingSize_;
    }
    const std::size_t fromBefore = filled_ - std::min(filled_, taken_); // of the block before
    const std::size_t inSlice = std::accumulate(
        sizes_.begin(), sizes_.begin() + static_cast<std::ptrdiff_t>(unit), std::size_t{0});
    return taken_ + fromBefore - filled_ + inSlice - std::min(fromBefore, inSlice);
}

void DocumentDecoder::refill() {
    filled_ -= decoded_;
    std::memmove(slice_.data(), slice_.data() + decoded_, filled_);
    decoded_ = 0;
    const std::size_t more = std::min(sliceSize - filled_, blockSize_ - taken_);
    std::memcpy(slice_.data() + filled_, block_ + taken_, more);
    filled_ += more;
    taken_ += more;
}

/// Decodes the front of the slice and returns the number of code units.
std::size_t DocumentDecoder::decode() {
    if (isEnded_ || filled_ == 0) {
        return 0;
    }
    if (keepsAscii_ && widen(slice_.data(), filled_, units_.data())) {
        std::fill_n(sizes_.begin(), filled_, 1);
        decoded_ = filled_;
        return filled_;
    }
    std::size_t count = 0;
    try {
        count = transcoder_->transcodeFrom(slice_.data(), filled_, units_.data(), sliceSize,
                                           decoded_, sizes_.data());
    } catch (const XMLException&) {
        decoded_ = 0;
    }
    isEnded_ = decoded_ == 0 && filled_ >= longestCharacter;
    if (hasMoreLineEnds_) {
        std::replace(units_.begin(), units_.begin() + count, u'\x85', u'\n');
        // Not one line end together with a carriage return, which a line feed would be.
        std::replace(units_.begin(), units_.begin() + count, u'\x2028', u' ');
    }
    return count;
}

} // namespace Corvid::XMLUtils
