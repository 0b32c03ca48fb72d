#pragma once

#include "host/base/Text.h"

#include <array>
#include <cstddef>
#include <fstream>
#include <memory>
#include <string>
#include <xercesc/sax/InputSource.hpp>

namespace Corvid::XMLUtils {

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
