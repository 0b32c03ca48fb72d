#pragma once

#include "host/base/Text.h"

#include <array>
#include <cstddef>
#include <fstream>
#include <memory>
#include <string>
#include <xercesc/sax/InputSource.hpp>

namespace Corvid::XMLUtils {

/// What the first bytes of a document say about its encoding.
struct Utf16Form {
    /// As Xerces-C names it; null when the bytes are no UTF-16.
    const XMLCh* encoding = nullptr;
    /// The size of the byte order mark, which is no part of the text.
    std::size_t markSize = 0;
};

/// Recognises UTF-16 by its first bytes: a byte order mark, or a character with which a document
/// can start, `<` or white space, in two bytes.
/// @param first  the first bytes, four if there are as many.
Utf16Form recogniseUtf16(const unsigned char* first, std::size_t count);

/// A document in memory; its encoding is recognised.
/// @param bytes  borrowed, longer than the source.
/// @throws xercesc::SAXParseException  there are none.
/// @throws InvalidArgument             `bytes` is null and `length` is not 0.
std::unique_ptr<xercesc::InputSource> openBuffer(const unsigned char* bytes, std::size_t length);

/// A document in a file that is read piece by piece; its encoding is recognised.
class FileInput final : public xercesc::InputSource {
public:
    /// Opens the file.
    /// @throws IOError  it does not exist, is a directory or can't be read.
    explicit FileInput(const Utf16Text& path);
    ~FileInput() override;

    /// Can be called once: the stream reads what this object opened, and must not outlive it.
    xercesc::BinInputStream* makeStream() const override;

private:
    class Stream;

    std::string name_;
    mutable std::ifstream file_;
    std::array<unsigned char, 4> head_{};
    std::size_t headBegin_ = 0;
    std::size_t headEnd_ = 0;
};

} // namespace Corvid::XMLUtils
