#include "host/xmlutils/ScannedInput.h"

#include "host/xmlutils/ParserSafety.h"
#include "host/xmlutils/scan/DocumentDecoder.h"
#include "host/xmlutils/scan/ParserTables.h"
#include "host/xmlutils/scan/TextPlace.h"

#include <memory>
#include <xercesc/util/BinInputStream.hpp>

namespace Corvid::XMLUtils {

using namespace xercesc;

class ScannedInput::Stream final : public BinInputStream {
public:
    explicit Stream(const InputSource& document)
        : bytes_(document.makeStream()), decoder_(document.getEncoding()), scanner_(tables_) {}

    XMLFilePos curPos() const override { return bytes_->curPos(); }

    XMLSize_t readBytes(XMLByte* const to, const XMLSize_t count) override {
        std::size_t allowed = 0;
        if (tables_.problem().empty()) {
            allowed = scan(to, bytes_->readBytes(to, count));
        }
        if (allowed == 0 && !tables_.problem().empty()) {
            throwParseError(place_.line(), place_.column(), tables_.problem().c_str());
        }
        return allowed;
    }

    const XMLCh* getContentType() const override { return bytes_->getContentType(); }

private:
    /// @return how many bytes the parser may see: all, unless a tag is beyond a limit.
    std::size_t scan(const XMLByte* block, std::size_t size) {
        decoder_.take(block, size);
        for (auto piece = decoder_.next(); !piece.empty(); piece = decoder_.next()) {
            const std::size_t scanned = scanner_.scan(piece);
            place_.pass(piece.substr(0, scanned));
            if (!tables_.problem().empty()) {
                return decoder_.bytesBefore(scanned);
            }
        }
        return size;
    }

    std::unique_ptr<BinInputStream> bytes_;
    DocumentDecoder decoder_;
    ParserTables tables_;
    StartTagScanner scanner_;
    TextPlace place_;
};

ScannedInput::ScannedInput(const InputSource& document)
    : InputSource(document.getMemoryManager()), document_(document) {
    setEncoding(document.getEncoding());
}

BinInputStream* ScannedInput::makeStream() const {
    // Xerces-C owns the stream and deletes it with its own operator, which XMemory gives it.
    return new (getMemoryManager()) Stream(document_);
}

} // namespace Corvid::XMLUtils
