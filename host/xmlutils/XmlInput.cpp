#include "host/xmlutils/XmlInput.h"

#include "host/base/Exceptions.h"
#include "host/xmlutils/ParserSafety.h"
#include "host/xmlutils/Utf16Form.h"

#include <algorithm>
#include <filesystem>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/util/BinInputStream.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace Corvid::XMLUtils {

namespace {

using Exceptions::IOError;

/// Names the encoding of a document where its bytes are UTF-16.
void setEncoding(xercesc::InputSource& input, Utf16Form::Order order) {
    if (order != Utf16Form::Order::none) {
        input.setEncoding(order == Utf16Form::Order::lowFirst
                              ? xercesc::XMLUni::fgUTF16LEncodingString
                              : xercesc::XMLUni::fgUTF16BEncodingString);
    }
}

std::size_t readInto(std::ifstream& file, unsigned char* to, std::size_t count,
                     const std::string& name) {
    file.read(reinterpret_cast<char*>(to), static_cast<std::streamsize>(count));
    if (file.bad()) {
        throw IOError(name + ": can't be read", CORVID_HERE);
    }
    return static_cast<std::size_t>(file.gcount());
}

} // namespace

std::unique_ptr<xercesc::InputSource> openBuffer(const unsigned char* bytes, std::size_t length) {
    if (length == 0) {
        throwParseError(1, 1, "empty document, expected a root element");
    }
    if (bytes == nullptr) {
        throw Exceptions::InvalidArgument(
            "XML document: no bytes, expected " + std::to_string(length), CORVID_HERE);
    }
    const Utf16Form form = recogniseUtf16(bytes, length);
    auto input = std::make_unique<xercesc::MemBufInputSource>(bytes + form.markSize,
                                                              length - form.markSize, u"");
    input->setCopyBufToStream(false);
    setEncoding(*input, form.order);
    return input;
}

/// Gives the bytes read for recognition, then the rest of the file.
class FileInput::Stream final : public xercesc::BinInputStream {
public:
    explicit Stream(const FileInput& input)
        : input_(input), head_(input.headBegin_), position_(input.headBegin_) {}

    XMLFilePos curPos() const override { return position_; }

    XMLSize_t readBytes(XMLByte* const to, const XMLSize_t count) override {
        std::size_t got = std::min(count, input_.headEnd_ - head_);
        std::copy_n(input_.head_.data() + head_, got, to);
        head_ += got;
        if (got < count && input_.file_) {
            got += readInto(input_.file_, to + got, count - got, input_.name_);
        }
        position_ += got;
        return got;
    }

    const XMLCh* getContentType() const override { return nullptr; }

private:
    const FileInput& input_;
    std::size_t head_;
    XMLFilePos position_;
};

FileInput::FileInput(const Utf16Text& path) : name_(Platform::toUtf8(path)) {
    const std::filesystem::path file = std::filesystem::u8path(name_);
    std::error_code error;
    const auto status = std::filesystem::status(file, error);
    if (!std::filesystem::exists(status)) {
        throw IOError(name_ + ": no such file", CORVID_HERE);
    }
    if (std::filesystem::is_directory(status)) {
        throw IOError(name_ + ": is a directory, expected a file", CORVID_HERE);
    }
    file_.open(file, std::ios::binary);
    if (!file_) {
        throw IOError(name_ + ": can't be opened", CORVID_HERE);
    }
    headEnd_ = readInto(file_, head_.data(), head_.size(), name_);
    const Utf16Form form = recogniseUtf16(head_.data(), headEnd_);
    headBegin_ = form.markSize;
    XMLUtils::setEncoding(*this, form.order);
}

FileInput::~FileInput() = default;

xercesc::BinInputStream* FileInput::makeStream() const {
    // Xerces-C owns the stream and deletes it with its own operator, which XMemory gives it.
    return new (getMemoryManager()) Stream(*this);
}

} // namespace Corvid::XMLUtils
