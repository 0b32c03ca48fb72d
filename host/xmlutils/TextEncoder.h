#pragma once

#include "host/xmlutils/EncodingType.h"

#include <cstddef>
#include <cstring>
#include <string_view>
#include <vector>

namespace Corvid::DataIO {
class DataSink;
}

namespace Corvid::XMLUtils {

/// Encodes UTF-16 text and hands the bytes to a sink in large pieces.
class TextEncoder {
public:
    /// Writes nothing yet.
    /// @param sink  borrowed; must outlive the encoder.
    TextEncoder(EncodingType encoding, DataIO::DataSink& sink);

    /// Writes the byte order mark that a file in this encoding begins with, if it has one.
    void byteOrderMark();

    /// Writes characters of 7 bits. In the header, because most are one or two that the caller has
    /// written out.
    void ascii(std::string_view text) {
        if (form_ == Form::utf8 && text.size() <= buffer_.size() - used_) {
            std::memcpy(buffer_.data() + used_, text.data(), text.size());
            used_ += text.size();
        } else {
            asciiAsUnits(text);
        }
    }

    /// @param text  `count` code units; every surrogate in it is one of a pair.
    void units(const char16_t* text, std::size_t count);

    /// Hands over what is left. To be called at the end; the destructor does not.
    void flush();

private:
    enum class Form { utf8, utf16LE, utf16BE };

    void asciiAsUnits(std::string_view text);
    std::size_t room();
    void toUtf8(const char16_t* text, std::size_t count);
    void toUtf16(const char16_t* text, std::size_t count);

    Form form_;
    bool hasByteOrderMark_;
    DataIO::DataSink& sink_;
    std::vector<unsigned char> buffer_;
    std::size_t used_ = 0;
};

} // namespace Corvid::XMLUtils
