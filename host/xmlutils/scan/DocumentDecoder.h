#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <xercesc/util/TransService.hpp>

namespace Corvid::XMLUtils {

/// Makes text of the bytes of a document, which come block by block, as Xerces-C does: its own
/// classes find the encoding and decode.
class DocumentDecoder {
public:
    /// @param encoding  that the document has whatever it says; null to recognise it. Borrowed.
    explicit DocumentDecoder(const XMLCh* encoding) noexcept : forced_(encoding) {}

    /// Gives the next block of the document. The first has the XML declaration, if there is one.
    /// @param bytes  borrowed until all pieces are taken.
    void take(const XMLByte* bytes, std::size_t count);

    /// The next piece of the block's text; empty at its end. Where Xerces-C can't decode the
    /// document, no text comes any more.
    /// @return borrowed until the next call.
    std::u16string_view next();

    /// How many bytes of the block come before a code unit of the piece that next() gave; of the
    /// first piece only those of the XML declaration count.
    std::size_t bytesBefore(std::size_t unit) const;

private:
    /// Where bytes can't be decoded, the text of a slice before them may be lost. A slice is too
    /// short for a tag that has too many attributes.
    static constexpr std::size_t sliceSize = 1024;

    void begin();
    void refill();
    std::size_t decode();

    const XMLCh* forced_;
    std::unique_ptr<xercesc::XMLTranscoder> transcoder_;
    bool isBegun_ = false;
    bool isEnded_ = false;
    bool keepsAscii_ = false;      ///< whether bytes below 128 are the characters of that number
    bool hasMoreLineEnds_ = false; ///< those of XML 1.1
    std::u16string opening_;       ///< the XML declaration, and what was decoded with it
    std::size_t openingSize_ = 0;  ///< of the declaration, in bytes
    bool givesOpening_ = false;    ///< whether next() gave it
    bool isOpeningGiven_ = false;

    const XMLByte* block_ = nullptr;
    std::size_t blockSize_ = 0;
    std::size_t taken_ = 0; ///< how many bytes of the block have been in the slice

    std::array<XMLByte, sliceSize> slice_{};
    std::size_t filled_ = 0;
    std::size_t decoded_ = 0; ///< how many bytes of the slice are in the piece
    std::array<char16_t, sliceSize> units_{};
    std::array<unsigned char, sliceSize> sizes_{}; ///< for each unit, in bytes
};

} // namespace Corvid::XMLUtils
