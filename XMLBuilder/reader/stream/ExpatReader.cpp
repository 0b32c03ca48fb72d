#include "XMLBuilder/reader/stream/ExpatReader.h"

#include "host/base/Exceptions.h"
#include "host/base/KeyedHash.h"
#include "host/dataio/DataSource.h"
#include "host/xmlutils/Utf16Form.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <expat.h>
#include <new>

namespace Corvid::XMLBuilder {

namespace {

constexpr std::size_t blockSize = std::size_t{64} * 1024;
constexpr std::size_t greatestBlock = std::size_t{256} * 1024 * 1024;

constexpr std::size_t longestDeclaration = 256; // of those that anybody writes

static_assert(sizeof(XML_Char) == 1, "expat is built for UTF-8");

/// An encoding as expat calls it; null where the document says it itself or is in UTF-8.
const char* nameOf(XMLUtils::Utf16Form::Order order) {
    switch (order) {
    case XMLUtils::Utf16Form::Order::lowFirst:
        return "UTF-16LE";
    case XMLUtils::Utf16Form::Order::highFirst:
        return "UTF-16BE";
    default:
        return nullptr;
    }
}

std::string inCapitals(std::string_view name) {
    std::string folded(name);
    std::transform(folded.begin(), folded.end(), folded.begin(),
                   [](char each) { return each >= 'a' && each <= 'z' ? each - 'a' + 'A' : each; });
    return folded;
}

/// Whether the declaration of a document calls its encoding "utf8", as many programs do: expat
/// knows UTF-8 by no other name.
bool saysUtf8(std::string_view front) {
    const std::string_view declaration = front.substr(0, front.find("?>"));
    const auto encoding = declaration.find("encoding");
    const auto quote = declaration.find_first_of("'\"", encoding);
    if (declaration.substr(0, 5) != "<?xml" || encoding == std::string_view::npos ||
        quote == std::string_view::npos) {
        return false;
    }
    const std::string_view name = declaration.substr(quote + 1);
    return inCapitals(name.substr(0, name.find(declaration[quote]))) == "UTF8";
}

/// Other names of ISO 8859-1 and ASCII; expat knows one of each.
bool takeEncoding(std::string_view name, XML_Encoding& info) {
    const std::string folded = inCapitals(name);
    static constexpr std::array<std::string_view, 8> latin1 = {
        "LATIN1", "LATIN-1", "L1", "ISO8859-1", "ISO_8859-1", "CP819", "IBM819", "ISO-IR-100"};
    static constexpr std::array<std::string_view, 4> ascii = {"ASCII", "US_ASCII", "USASCII",
                                                              "ISO646-US"};
    const bool isLatin1 = std::find(latin1.begin(), latin1.end(), folded) != latin1.end();
    const bool isAscii = std::find(ascii.begin(), ascii.end(), folded) != ascii.end();
    if (!isLatin1 && !isAscii) {
        return false;
    }
    for (int i = 0; i != 256; ++i) {
        info.map[i] = isAscii && i > 0x7F ? -1 : i;
    }
    info.data = nullptr;
    info.convert = nullptr;
    info.release = nullptr;
    return true;
}

} // namespace

void ExpatReader::Free::operator()(XML_ParserStruct* parser) const { XML_ParserFree(parser); }

template <class Body> void ExpatReader::guarded(Body body) noexcept {
    if (failure_) {
        return;
    }
    try {
        ++count_;
        body();
    } catch (...) {
        failure_ = std::current_exception();
        XML_StopParser(parser_.get(), XML_FALSE);
    }
}

void ExpatReader::start(const char* encoding) {
    parser_.reset(XML_ParserCreate(encoding));
    if (parser_ == nullptr) {
        throw std::bad_alloc();
    }
    XML_Parser parser = parser_.get();
    unsigned long salt = 0;
    const auto key = KeyedHash::randomKey();
    std::memcpy(&salt, key.data(), sizeof salt);
    XML_SetHashSalt(parser, salt);
    XML_SetUserData(parser, this);
    XML_SetElementHandler(
        parser,
        [](void* data, const XML_Char* name, const XML_Char** attributes) {
            self(data).guarded([&] { self(data).events_.startElement(name, attributes); });
        },
        [](void* data, const XML_Char*) {
            self(data).guarded([&] { self(data).events_.endElement(); });
        });
    XML_SetCharacterDataHandler(parser, [](void* data, const XML_Char* text, int size) {
        self(data).guarded([&] {
            self(data).events_.characters({text, static_cast<std::size_t>(size)});
        });
    });
    XML_SetProcessingInstructionHandler(
        parser, [](void* data, const XML_Char* target, const XML_Char* text) {
            self(data).guarded([&] { self(data).events_.instruction(target, text); });
        });
    XML_SetStartDoctypeDeclHandler(
        parser, [](void* data, const XML_Char*, const XML_Char*, const XML_Char*, int) {
            self(data).guarded([&] {
                self(data).refuse("document type declarations are not accepted, remove it");
            });
        });
    XML_SetUnknownEncodingHandler(
        parser,
        [](void* data, const XML_Char* name, XML_Encoding* info) {
            if (takeEncoding(name, *info)) {
                return 1;
            }
            self(data).wrongEncoding_ = name;
            return 0;
        },
        this);
}

std::size_t ExpatReader::line() const { return XML_GetCurrentLineNumber(parser_.get()); }

std::size_t ExpatReader::column() const { return XML_GetCurrentColumnNumber(parser_.get()) + 1; }

void ExpatReader::refuse(const std::string& what) const { refuseAt(line(), column(), what); }

void ExpatReader::refuseAt(std::size_t line, std::size_t column, const std::string& what) {
    throw Exceptions::ParseError("line " + std::to_string(line) + ", column " +
                                     std::to_string(column) + ": " + what,
                                 CORVID_HERE);
}

void ExpatReader::refuseSyntax() const {
    const std::string innermost = events_.innermost();
    const XML_Error error = XML_GetErrorCode(parser_.get());
    switch (error) {
    case XML_ERROR_NO_MEMORY:
        throw std::bad_alloc();
    case XML_ERROR_UNKNOWN_ENCODING:
    case XML_ERROR_INCORRECT_ENCODING:
        refuse((wrongEncoding_.empty() ? "the encoding that the document names is not that of its "
                                         "bytes"
                                       : "encoding '" + wrongEncoding_ + "' is not read") +
               "; save the document in UTF-8, or use --lenient");
    case XML_ERROR_TAG_MISMATCH:
        refuse("expected end of tag '" + innermost + "'");
    case XML_ERROR_NO_ELEMENTS:
        refuse(innermost.empty() ? "the document ends before its root element"
                                 : "the document ends in the element '" + innermost + "'");
    case XML_ERROR_INVALID_TOKEN:
        refuse("expected other markup here, or a character that XML allows and that the encoding "
               "of the document has");
    case XML_ERROR_UNCLOSED_TOKEN:
    case XML_ERROR_PARTIAL_CHAR:
        refuse("the document ends in the midst of markup or of a character");
    case XML_ERROR_JUNK_AFTER_DOC_ELEMENT:
        refuse("expected nothing after the end of the root");
    default:
        refuse(XML_ErrorString(error));
    }
}

/// @param front  the first bytes of the document, which are not in the source any more.
void ExpatReader::feed(std::basic_string_view<unsigned char> front, DataIO::DataSource& source) {
    std::size_t block = blockSize;
    for (bool isFinal = false; !isFinal;) {
        auto* const buffer =
            static_cast<unsigned char*>(XML_GetBuffer(parser_.get(), static_cast<int>(block)));
        if (buffer == nullptr) {
            throw std::bad_alloc();
        }
        std::copy(front.begin(), front.end(), buffer);
        const std::size_t size =
            front.size() + source.read(buffer + front.size(), block - front.size());
        front = {};
        isFinal = size < block;
        if (surrogates_ && !surrogates_->goesOn({buffer, size})) {
            refuseAt(surrogates_->line(), surrogates_->column(),
                     "half of a surrogate pair, expected both");
        }
        const std::uint64_t before = count_;
        const XML_Status status =
            XML_ParseBuffer(parser_.get(), static_cast<int>(size), isFinal ? XML_TRUE : XML_FALSE);
        if (failure_) {
            std::rethrow_exception(failure_);
        }
        if (status != XML_STATUS_OK) {
            refuseSyntax();
        }
        // A token that no block ends is looked at again from its start with each: with blocks of
        // one size a long one would take the square of its size.
        block = count_ != before ? blockSize : std::min(2 * block, greatestBlock);
    }
}

void ExpatReader::read(DataIO::DataSource& source) {
    std::array<unsigned char, longestDeclaration> first{};
    const std::size_t count = source.read(first.data(), first.size());
    if (count == 0) {
        throw Exceptions::ParseError("line 1, column 1: empty document, expected a root element",
                                     CORVID_HERE);
    }
    // expat would read the text as what a declaration says in spite of the mark.
    if (count >= 3 && first[0] == 0xEF && first[1] == 0xBB && first[2] == 0xBF) {
        start("UTF-8");
        feed({first.data() + 3, count - 3}, source);
        return;
    }
    const auto form = XMLUtils::recogniseUtf16(first.data(), count);
    if (form.order != XMLUtils::Utf16Form::Order::none) {
        surrogates_.emplace(form.order == XMLUtils::Utf16Form::Order::highFirst);
    }
    const std::string_view front(reinterpret_cast<const char*>(first.data()), count);
    start(saysUtf8(front) ? "UTF-8" : nameOf(form.order));
    feed({first.data() + form.markSize, count - form.markSize}, source);
}

} // namespace Corvid::XMLBuilder
