#include "host/xmlutils/ParserSafety.h"

#include "host/base/Exceptions.h"
#include "host/xmlutils/DocumentLimits.h"
#include "host/xmlutils/ScannedInput.h"
#include "host/xmlutils/WhiteSpaceFilter.h"
#include "host/xmlutils/XmlText.h"

#include <exception>
#include <string>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/Wrapper4InputSource.hpp>
#include <xercesc/parsers/AbstractDOMParser.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLUni.hpp>
#include <xercesc/validators/DTD/DocTypeHandler.hpp>

namespace Corvid::XMLUtils {

namespace {

using namespace xercesc;

/// Reaches what a parser keeps to itself.
class ParserAccess : public AbstractDOMParser {
public:
    /// The scanner alone has line and column while it parses.
    static XMLScanner& scannerOf(const AbstractDOMParser& parser) {
        return *(parser.*&ParserAccess::getScanner)();
    }

    /// A parser that has run out of memory believes that it still parses, and then refuses every
    /// change of its configuration.
    static void endParse(AbstractDOMParser& parser) {
        (parser.*&ParserAccess::setParseInProgress)(false);
    }
};

/// Keeps the first error and ends the parse.
class FirstError final : public DOMErrorHandler {
public:
    bool handleError(const DOMError& error) override {
        if (error.getSeverity() == DOMError::DOM_SEVERITY_WARNING) {
            return true;
        }
        if (!found_) {
            found_ = true;
            line_ = error.getLocation()->getLineNumber();
            column_ = error.getLocation()->getColumnNumber();
            try {
                text_ = Platform::toUtf8(fromXml(error.getMessage()));
            } catch (...) {
                // Xerces-C would drop it and go on.
                failure_ = std::current_exception();
            }
        }
        return false;
    }

    void throwIfFound() const {
        if (failure_) {
            std::rethrow_exception(failure_);
        }
        if (found_) {
            throwParseError(line_, column_, text_.c_str());
        }
    }

private:
    bool found_ = false;
    std::exception_ptr failure_; ///< of taking the text
    std::string text_;
    XMLFileLoc line_ = 0;
    XMLFileLoc column_ = 0;
};

/// Ends the parse at a document type, before any of its declarations or its file is read.
class NoDocumentType final : public DocTypeHandler {
public:
    NoDocumentType(const XMLScanner& scanner, DocTypeHandler* replaced)
        : scanner_(scanner), replaced_(replaced) {}

    void doctypeDecl(const DTDElementDecl&, const XMLCh*, const XMLCh*, bool, bool) override {
        throwParseError(scanner_, "document type found, expected none");
    }
    void resetDocType() override {
        if (replaced_ != nullptr) {
            replaced_->resetDocType();
        }
    }

    void attDef(const DTDElementDecl&, const DTDAttDef&, bool) override {}
    void doctypeComment(const XMLCh*) override {}
    void doctypePI(const XMLCh*, const XMLCh*) override {}
    void doctypeWhitespace(const XMLCh*, XMLSize_t) override {}
    void elementDecl(const DTDElementDecl&, bool) override {}
    void endAttList(const DTDElementDecl&) override {}
    void endIntSubset() override {}
    void endExtSubset() override {}
    void entityDecl(const DTDEntityDecl&, bool, bool) override {}
    void notationDecl(const XMLNotationDecl&, bool) override {}
    void startAttList(const DTDElementDecl&) override {}
    void startIntSubset() override {}
    void startExtSubset() override {}
    void TextDecl(const XMLCh*, const XMLCh*) override {}

private:
    const XMLScanner& scanner_;
    DocTypeHandler* replaced_;
};

/// Puts the guards into a parser and takes them out again. The parser keeps its scanner: the one of
/// Xerces-C that checks for nothing but well-formedness takes a tenth less time, but compares each
/// attribute of an element with all before it.
class Guarded {
public:
    Guarded(DOMLSParser& parser, AbstractDOMParser& based, EmptyText emptyText)
        : parser_(parser), based_(based), scanner_(ParserAccess::scannerOf(based)),
          oldDocHandler_(scanner_.getDocHandler()),
          oldDocTypeHandler_(scanner_.getDocTypeHandler()), noEmptyText_(*oldDocHandler_),
          limits_(scanner_, emptyText == EmptyText::kept ? *oldDocHandler_ : noEmptyText_),
          documentType_(scanner_, oldDocTypeHandler_),
          oldErrorHandler_(config().getParameter(XMLUni::fgDOMErrorHandler)),
          oldSecurity_(config().getParameter(XMLUni::fgXercesSecurityManager)) {
        configure();
        if (emptyText == EmptyText::leftOut) {
            config().setParameter(XMLUni::fgDOMComments, true); // A comment ends a text.
        }
        security_.setEntityExpansionLimit(0);
        config().setParameter(XMLUni::fgXercesSecurityManager, &security_);
        config().setParameter(XMLUni::fgDOMErrorHandler, &error_);
        scanner_.setDocHandler(&limits_);
        scanner_.setDocTypeHandler(&documentType_);
    }
    Guarded(const Guarded&) = delete;
    Guarded& operator=(const Guarded&) = delete;
    ~Guarded() {
        ParserAccess::endParse(based_);
        scanner_.setDocTypeHandler(oldDocTypeHandler_);
        scanner_.setDocHandler(oldDocHandler_);
        config().setParameter(XMLUni::fgDOMErrorHandler, oldErrorHandler_);
        config().setParameter(XMLUni::fgXercesSecurityManager, oldSecurity_);
    }

    DOMDocument* parse(const InputSource& input) {
        ScannedInput scanned(input);
        const Wrapper4InputSource wrapper(&scanned, false);
        DOMDocument* const document = parser_.parse(&wrapper);
        error_.throwIfFound();
        if (document == nullptr || document->getDocumentElement() == nullptr) {
            throwParseError(scanner_, "no root element, expected one");
        }
        return document;
    }

private:
    DOMConfiguration& config() const { return *parser_.getDomConfig(); }

    void configure() {
        config().setParameter(XMLUni::fgDOMNamespaces, true);
        config().setParameter(XMLUni::fgDOMValidate, false);
        config().setParameter(XMLUni::fgDOMValidateIfSchema, false);
        config().setParameter(XMLUni::fgDOMEntities, false);
        config().setParameter(XMLUni::fgXercesSchema, false);
        config().setParameter(XMLUni::fgXercesDoXInclude, false);
        config().setParameter(XMLUni::fgXercesLoadExternalDTD, false);
        config().setParameter(XMLUni::fgXercesLoadSchema, false);
        config().setParameter(XMLUni::fgXercesDisableDefaultEntityResolution, true);
        config().setParameter(XMLUni::fgXercesContinueAfterFatalError, false);
    }

    DOMLSParser& parser_;
    AbstractDOMParser& based_; ///< the same parser
    XMLScanner& scanner_;
    XMLDocumentHandler* oldDocHandler_;
    DocTypeHandler* oldDocTypeHandler_;
    FirstError error_;
    WhiteSpaceFilter noEmptyText_;
    DocumentLimits limits_;
    NoDocumentType documentType_;
    SecurityManager security_;
    const void* oldErrorHandler_;
    const void* oldSecurity_;
};

} // namespace

DOMDocument* parseSafely(const InputSource& input, DOMLSParser& parser, EmptyText emptyText) {
    auto* const based = dynamic_cast<AbstractDOMParser*>(&parser);
    if (based == nullptr) {
        throw Exceptions::InvalidArgument(
            "XML parser of an unknown implementation, expected one based on Xerces-C", CORVID_HERE);
    }
    return Guarded(parser, *based, emptyText).parse(input);
}

void throwParseError(unsigned long long line, unsigned long long column, const char* text) {
    const Utf16Text message = Platform::fromUtf8("line " + std::to_string(line) + ", column " +
                                                 std::to_string(column) + ": " + text);
    throw SAXParseException(toXml(message), nullptr, nullptr, line, column);
}

void throwParseError(const XMLScanner& scanner, const std::string& text) {
    const Locator& at = *scanner.getLocator();
    throwParseError(at.getLineNumber(), at.getColumnNumber(), text.c_str());
}

} // namespace Corvid::XMLUtils
