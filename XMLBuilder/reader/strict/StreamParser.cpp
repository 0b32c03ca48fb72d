#include "XMLBuilder/reader/strict/StreamParser.h"

#include "XMLBuilder/reader/NodePool.h"
#include "XMLBuilder/reader/strict/NameTable.h"
#include "XMLBuilder/reader/strict/StrictText.h"
#include "XMLBuilder/reader/strict/SurrogateCheck.h"
#include "host/base/Exceptions.h"
#include "host/base/KeyedHash.h"
#include "host/base/Text.h"
#include "host/dataio/DataSource.h"
#include "host/xmlutils/ElementLimits.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <exception>
#include <expat.h>
#include <optional>
#include <string_view>
#include <vector>

namespace Corvid::XMLBuilder {

namespace {

constexpr std::size_t blockSize = std::size_t{64} * 1024;
constexpr std::size_t greatestBlock = std::size_t{256} * 1024 * 1024;

constexpr std::size_t longestUri = 1024; // as in a dictionary

static_assert(sizeof(XML_Char) == 1, "expat is built for UTF-8");

/// The encoding of the first bytes, as expat calls it, and the size of the byte order mark; null
/// where the document says it itself or is in UTF-8.
struct Encoding {
    const char* name = nullptr;
    std::size_t markSize = 0;
};

Encoding recognise(const unsigned char* first, std::size_t count) {
    const auto startsDocument = [](unsigned char byte) { return byte == '<' || isXmlSpace(byte); };
    if (count < 2 || (count >= 4 && first[2] == 0 && first[3] == 0)) {
        return {};
    }
    // expat would read the text as what a declaration says in spite of the mark.
    if (count >= 3 && first[0] == 0xEF && first[1] == 0xBB && first[2] == 0xBF) {
        return {"UTF-8", 3};
    }
    if (first[0] == 0xFF && first[1] == 0xFE) {
        return {"UTF-16LE", 2};
    }
    if (first[0] == 0xFE && first[1] == 0xFF) {
        return {"UTF-16BE", 2};
    }
    if (startsDocument(first[0]) && first[1] == 0) {
        return {"UTF-16LE", 0};
    }
    if (first[0] == 0 && startsDocument(first[1])) {
        return {"UTF-16BE", 0};
    }
    return {};
}

class Parser {
public:
    Parser(const char* encoding, StreamHandler& handler);

    /// @param front  the first bytes of the document, which are not in the source any more.
    void parse(std::basic_string_view<unsigned char> front, DataIO::DataSource& source);

private:
    struct Free {
        void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
    };
    struct Level {
        DocumentNode* element;
        DocumentNode* lastChild;
        bool hasElements;
    };

    void startElement(const char* name, const char** attributes);
    void endElement();
    void characters(std::string_view text);
    void instruction(const char* target, const char* data);
    void checkUri(const char* uri);
    bool takeEncoding(std::string_view name, XML_Encoding& info);
    [[noreturn]] void refuse(const std::string& what);
    [[noreturn]] static void refuseAt(std::size_t line, std::size_t column,
                                      const std::string& what);
    [[noreturn]] void refuseSyntax();

    DocumentNode& addElement(NodePool& pool, const char* name, const char** attributes,
                             const DocumentNode* parent);
    void append(Level& level, DocumentNode& child);
    void flushText(bool isLast);
    /// How many of the open elements are not part of a piece: the root, and a container.
    std::size_t outer() const { return container_ == nullptr ? 1 : 2; }

    /// Calls a member; expat is C, so what it throws waits until the parse has stopped.
    template <class Body> void guarded(Body body) noexcept {
        if (failure_) {
            return;
        }
        try {
            body();
        } catch (...) {
            failure_ = std::current_exception();
            XML_StopParser(parser_.get(), XML_FALSE);
        }
    }
    static Parser& self(void* data) { return *static_cast<Parser*>(data); }

    std::unique_ptr<XML_ParserStruct, Free> parser_;
    StreamHandler& handler_;
    std::exception_ptr failure_;
    std::string wrongEncoding_;
    std::optional<SurrogateCheck> surrogates_; ///< nothing where the document is not in UTF-16
    std::size_t block_ = blockSize;
    std::uint64_t events_ = 0;

    NameTable names_;
    XMLUtils::ElementLimits limits_;

    NodePool ofRoot_;
    NodePool ofContainer_;
    NodePool ofPiece_;
    DocumentNode* root_ = nullptr;
    DocumentNode* container_ = nullptr;
    std::vector<Level> open_; ///< all open elements
    std::u16string value_;    ///< of an attribute
    std::u16string text_;     ///< that is not part of a node yet
    std::size_t textLine_ = 0;
    std::size_t textColumn_ = 0;
};

Parser::Parser(const char* encoding, StreamHandler& handler) : handler_(handler) {
    parser_.reset(XML_ParserCreateNS(encoding, NameTable::separator));
    if (parser_ == nullptr) {
        throw std::bad_alloc();
    }
    if (encoding != nullptr && encoding != std::string_view("UTF-8")) {
        surrogates_.emplace(encoding == std::string_view("UTF-16BE"));
    }
    XML_Parser parser = parser_.get();
    unsigned long salt = 0;
    const auto key = KeyedHash::randomKey();
    std::memcpy(&salt, key.data(), sizeof salt);
    XML_SetHashSalt(parser, salt);
    XML_SetReturnNSTriplet(parser, XML_TRUE);
    XML_SetUserData(parser, this);
    XML_SetElementHandler(
        parser,
        [](void* data, const XML_Char* name, const XML_Char** attributes) {
            self(data).guarded([&] { self(data).startElement(name, attributes); });
        },
        [](void* data, const XML_Char*) { self(data).guarded([&] { self(data).endElement(); }); });
    XML_SetCharacterDataHandler(parser, [](void* data, const XML_Char* text, int size) {
        self(data).guarded([&] { self(data).characters({text, static_cast<std::size_t>(size)}); });
    });
    XML_SetProcessingInstructionHandler(
        parser, [](void* data, const XML_Char* target, const XML_Char* text) {
            self(data).guarded([&] { self(data).instruction(target, text); });
        });
    XML_SetStartNamespaceDeclHandler(parser, [](void* data, const XML_Char*, const XML_Char* uri) {
        self(data).guarded([&] { self(data).checkUri(uri); });
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
            return self(data).takeEncoding(name, *info) ? 1 : 0;
        },
        this);
}

/// expat repeats the URI with each name.
void Parser::checkUri(const char* uri) {
    const std::size_t size = uri == nullptr ? 0 : std::strlen(uri);
    if (size > longestUri) {
        refuse("namespace URI of " + std::to_string(size) + " bytes, expected at most " +
               std::to_string(longestUri));
    }
}

/// Other names of ISO 8859-1; expat knows one.
bool Parser::takeEncoding(std::string_view name, XML_Encoding& info) {
    std::string folded(name);
    std::transform(folded.begin(), folded.end(), folded.begin(),
                   [](char each) { return each >= 'a' && each <= 'z' ? each - 'a' + 'A' : each; });
    static constexpr std::array<std::string_view, 8> latin1 = {
        "LATIN1", "LATIN-1", "L1", "ISO8859-1", "ISO_8859-1", "CP819", "IBM819", "ISO-IR-100"};
    static constexpr std::array<std::string_view, 4> ascii = {"ASCII", "US_ASCII", "USASCII",
                                                              "ISO646-US"};
    const bool isLatin1 = std::find(latin1.begin(), latin1.end(), folded) != latin1.end();
    const bool isAscii = std::find(ascii.begin(), ascii.end(), folded) != ascii.end();
    if (!isLatin1 && !isAscii) {
        wrongEncoding_ = name;
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

DocumentNode& Parser::addElement(NodePool& pool, const char* name, const char** attributes,
                                 const DocumentNode* parent) {
    const auto give = [this](DocumentNode& node, const char* expanded) {
        const Name& known = names_.find(expanded);
        node.name = known.qualified;
        node.local = known.local;
        node.uri = known.uri;
        node.line = XML_GetCurrentLineNumber(parser_.get());
        node.column = XML_GetCurrentColumnNumber(parser_.get()) + 1;
    };
    DocumentNode& element = pool.add();
    give(element, name);
    element.parent = parent;
    DocumentNode* last = nullptr;
    std::size_t count = 0;
    for (; *attributes != nullptr; attributes += 2, ++count) {
        DocumentNode& attribute = pool.add();
        attribute.kind = DocumentNode::Kind::attribute;
        give(attribute, attributes[0]);
        value_.clear();
        appendUtf16(value_, attributes[1]);
        attribute.value = pool.addText(value_);
        attribute.parent = &element;
        (last == nullptr ? element.firstAttribute : last->next) = &attribute;
        last = &attribute;
    }
    const std::string problem = limits_.startElement(count, true);
    if (!problem.empty()) {
        refuse("element " + narrow(element.name) + problem);
    }
    return element;
}

void Parser::append(Level& level, DocumentNode& child) {
    (level.lastChild == nullptr ? level.element->firstChild : level.lastChild->next) = &child;
    level.lastChild = &child;
}

void Parser::startElement(const char* name, const char** attributes) {
    ++events_;
    flushText(false);
    if (root_ == nullptr) {
        root_ = &addElement(ofRoot_, name, attributes, nullptr);
        open_.push_back({root_, nullptr, true});
        handler_.beginRoot(*root_);
        return;
    }
    const bool isPiece = open_.size() == outer();
    if (isPiece) {
        ofPiece_.clear();
    }
    DocumentNode& element = addElement(ofPiece_, name, attributes, open_.back().element);
    if (isPiece && container_ == nullptr && handler_.isContainer(element)) {
        ofContainer_.clear();
        container_ = &ofContainer_.addCopy(element);
    } else if (!isPiece) {
        append(open_.back(), element);
        open_.back().hasElements = true;
    }
    const bool isContainer = isPiece && container_ != nullptr && open_.size() == 1;
    open_.push_back({isContainer ? container_ : &element, nullptr, isContainer});
}

void Parser::endElement() {
    ++events_;
    flushText(true);
    const Level closed = open_.back();
    open_.pop_back();
    limits_.endElement();
    if (closed.element == container_) {
        container_ = nullptr;
    } else if (open_.size() == outer() && closed.element != root_) {
        if (container_ == nullptr) {
            handler_.childOfRoot(*closed.element);
        } else {
            handler_.childOfContainer(*closed.element);
        }
    }
}

void Parser::characters(std::string_view text) {
    ++events_;
    if (text_.empty()) {
        textLine_ = XML_GetCurrentLineNumber(parser_.get());
        textColumn_ = XML_GetCurrentColumnNumber(parser_.get()) + 1;
    }
    appendUtf16(text_, text);
}

/// Makes a node of the text so far. White space between elements is none.
/// @param isLast  whether the element ends.
void Parser::flushText(bool isLast) {
    if (text_.empty()) {
        return;
    }
    Level& level = open_.back();
    const bool mayBeLayout = level.hasElements || !isLast;
    if (!mayBeLayout || !trimmed(text_).empty()) {
        const bool isOuter = open_.size() <= outer();
        DocumentNode& node = ofPiece_.add();
        node.kind = DocumentNode::Kind::text;
        node.value = ofPiece_.addText(text_);
        node.parent = level.element;
        node.line = textLine_;
        node.column = textColumn_;
        if (isOuter) {
            handler_.strayText(node);
        } else {
            append(level, node);
        }
    }
    text_.clear();
}

void Parser::instruction(const char* target, const char* data) {
    ++events_;
    handler_.instruction({target, data, XML_GetCurrentLineNumber(parser_.get()),
                          XML_GetCurrentColumnNumber(parser_.get()) + 1});
}

void Parser::refuse(const std::string& what) {
    refuseAt(XML_GetCurrentLineNumber(parser_.get()), XML_GetCurrentColumnNumber(parser_.get()) + 1,
             what);
}

void Parser::refuseAt(std::size_t line, std::size_t column, const std::string& what) {
    throw Exceptions::ParseError("line " + std::to_string(line) + ", column " +
                                     std::to_string(column) + ": " + what,
                                 CORVID_HERE);
}

void Parser::refuseSyntax() {
    const std::string innermost = open_.empty() ? "" : narrow(open_.back().element->name);
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

void Parser::parse(std::basic_string_view<unsigned char> front, DataIO::DataSource& source) {
    for (bool isFinal = false; !isFinal;) {
        auto* const buffer =
            static_cast<unsigned char*>(XML_GetBuffer(parser_.get(), static_cast<int>(block_)));
        if (buffer == nullptr) {
            throw std::bad_alloc();
        }
        std::copy(front.begin(), front.end(), buffer);
        const std::size_t size =
            front.size() + source.read(buffer + front.size(), block_ - front.size());
        front = {};
        isFinal = size < block_;
        if (surrogates_ && !surrogates_->goesOn({buffer, size})) {
            refuseAt(surrogates_->line(), surrogates_->column(),
                     "half of a surrogate pair, expected both");
        }
        const std::uint64_t before = events_;
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
        block_ = events_ != before ? blockSize : std::min(2 * block_, greatestBlock);
    }
    handler_.endDocument();
}

} // namespace

void parseStream(DataIO::DataSource& source, StreamHandler& handler) {
    std::array<unsigned char, 4> first{};
    const std::size_t count = source.read(first.data(), first.size());
    if (count == 0) {
        throw Exceptions::ParseError("line 1, column 1: empty document, expected a root element",
                                     CORVID_HERE);
    }
    const Encoding encoding = recognise(first.data(), count);
    Parser parser(encoding.name, handler);
    parser.parse({first.data() + encoding.markSize, count - encoding.markSize}, source);
}

} // namespace Corvid::XMLBuilder
