#include "host/xmlutils/SchemaValidator.h"

#include "host/base/Exceptions.h"
#include "host/base/Shortened.h"
#include "host/xmlutils/ElementLimits.h"
#include "host/xmlutils/Initializer.h"
#include "host/xmlutils/ParserSafety.h"
#include "host/xmlutils/PreparedGrammars.h"
#include "host/xmlutils/ScannedInput.h"
#include "host/xmlutils/XmlInput.h"
#include "host/xmlutils/XmlText.h"

#include <algorithm>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/XMLGrammarPoolImpl.hpp>
#include <xercesc/sax/EntityResolver.hpp>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/sax2/Attributes.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace Corvid::XMLUtils {

namespace {

using namespace xercesc;

std::string toUtf8(const XMLCh* text) {
    return text == nullptr ? std::string() : Platform::toUtf8(fromXml(text));
}

/// A content model may list hundreds of elements.
constexpr std::size_t longestMessage = 600;

ValidityError toError(const SAXParseException& problem) {
    return {problem.getLineNumber(), problem.getColumnNumber(),
            shortened(toUtf8(problem.getMessage()), longestMessage)};
}

/// Ends a parse whose further errors nobody wants.
struct Enough {};

/// Collects what the validator reports, refuses document types and opens nothing.
class Collector final : public DefaultHandler {
public:
    explicit Collector(std::size_t most) : most_(most) {}

    void error(const SAXParseException& problem) override {
        errors_.push_back(toError(problem));
        placeAtChild(errors_.back());
        if (errors_.size() == most_) {
            throw Enough();
        }
    }
    // A document that is not well-formed is none, whatever was found before.
    void fatalError(const SAXParseException& problem) override {
        throwParseError(problem.getLineNumber(), problem.getColumnNumber(),
                        toUtf8(problem.getMessage()).c_str());
    }
    void warning(const SAXParseException&) override {}
    void resetErrors() override {}

    void setDocumentLocator(const Locator* locator) override { locator_ = locator; }
    void startElement(const XMLCh* uri, const XMLCh* name, const XMLCh* qualified,
                      const Attributes& attributes) override {
        check(limits_.startElement(attributes.getLength(), true), qualified);
        check(limits_.useName(0, {uri, qualified}), qualified);
        for (XMLSize_t i = 0; i != attributes.getLength(); ++i) {
            check(limits_.useName(0, {attributes.getURI(i), attributes.getQName(i)}), qualified);
        }
        open_.back().push_back({name, locator_->getLineNumber(), locator_->getColumnNumber()});
        open_.emplace_back();
    }
    void endElement(const XMLCh*, const XMLCh*, const XMLCh*) override {
        limits_.endElement();
        open_.pop_back();
    }
    void startDTD(const XMLCh*, const XMLCh*, const XMLCh*) override {
        throwParseError(locator_->getLineNumber(), locator_->getColumnNumber(),
                        "document type found, expected none");
    }

    std::vector<ValidityError> take() { return std::move(errors_); }

private:
    struct Child {
        std::u16string name;
        XMLFileLoc line;
        XMLFileLoc column;
    };

    void check(const std::string& problem, const XMLCh* element) const {
        if (!problem.empty()) {
            throwParseError(locator_->getLineNumber(), locator_->getColumnNumber(),
                            ("element " + toUtf8(element) + problem).c_str());
        }
    }

    /// The children of an element are checked at its end. People look for the child that the error
    /// names: "element 'TrackID' is not allowed ...".
    void placeAtChild(ValidityError& error) const {
        constexpr std::string_view begin = "element '";
        const std::size_t end = error.message.find('\'', begin.size());
        if (error.message.compare(0, begin.size(), begin) != 0 || end == std::string::npos) {
            return;
        }
        const Utf16Text name =
            Platform::fromUtf8(error.message.substr(begin.size(), end - begin.size()));
        const auto& children = open_.back();
        const auto child = std::find_if(children.rbegin(), children.rend(), [&](const Child& each) {
            return each.name == toXml(name);
        });
        if (child != children.rend()) {
            error.line = child->line;
            error.column = child->column;
        }
    }

    std::size_t most_;
    const Locator* locator_ = nullptr;
    std::vector<std::vector<Child>> open_{1}; ///< the children so far of each open element
    std::vector<ValidityError> errors_;
    ElementLimits limits_;
};

/// Gives a schema those that it imports. For all else it gives nothing to read.
class Imports final : public EntityResolver {
public:
    explicit Imports(const std::vector<SchemaText>& schemas) : schemas_(schemas) {}

    InputSource* resolveEntity(const XMLCh*, const XMLCh* systemId) override {
        const std::string path = toUtf8(systemId);
        const std::string name = path.substr(path.find_last_of('/') + 1);
        const auto found = std::find_if(schemas_.begin(), schemas_.end(),
                                        [&](const auto& s) { return s.fileName == name; });
        if (found == schemas_.end()) {
            throw Exceptions::InvalidFormat("schema " + name + " is imported, but is not there",
                                            CORVID_HERE);
        }
        return sourceOf(*found).release();
    }

    static std::unique_ptr<MemBufInputSource> sourceOf(const SchemaText& schema) {
        return std::make_unique<MemBufInputSource>(
            reinterpret_cast<const XMLByte*>(schema.text.data()), schema.text.size(),
            schema.fileName.c_str());
    }

private:
    const std::vector<SchemaText>& schemas_;
};

std::unique_ptr<SAX2XMLReader> createReader(XMLGrammarPool& pool) {
    std::unique_ptr<SAX2XMLReader> reader(
        XMLReaderFactory::createXMLReader(XMLPlatformUtils::fgMemoryManager, &pool));
    const auto set = [&](const XMLCh* feature, bool on) { reader->setFeature(feature, on); };
    set(XMLUni::fgSAX2CoreNameSpaces, true);
    set(XMLUni::fgSAX2CoreNameSpacePrefixes, true); // namespace declarations count as attributes
    set(XMLUni::fgSAX2CoreValidation, true);
    set(XMLUni::fgXercesDynamic, false);
    set(XMLUni::fgXercesSchema, true);
    set(XMLUni::fgXercesHandleMultipleImports, true);
    set(XMLUni::fgXercesUseCachedGrammarInParse, true);
    set(XMLUni::fgXercesIgnoreAnnotations, true); // they are for people, and half of a schema
    set(XMLUni::fgXercesLoadSchema, false);
    set(XMLUni::fgXercesLoadExternalDTD, false);
    set(XMLUni::fgXercesDisableDefaultEntityResolution, true);
    return reader;
}

} // namespace

/// The pool is never locked. A lock would make a model of the schemas for programs to look at, and
/// no parse changes the pool unless it is asked to.
struct SchemaValidator::State {
    XMLGrammarPoolImpl pool{XMLPlatformUtils::fgMemoryManager};
};

std::string ValidityError::describe() const {
    return "line " + std::to_string(line) + ", column " + std::to_string(column) + ": " + message;
}

SchemaValidator::SchemaValidator(const std::vector<SchemaText>& schemas) {
    Initializer::instance();
    state_ = std::make_unique<State>();
    const auto reader = createReader(state_->pool);
    Imports imports(schemas);
    reader->setEntityResolver(&imports);
    Collector problems(1);
    reader->setErrorHandler(&problems);
    try {
        reader->loadGrammar(*Imports::sourceOf(schemas.front()), Grammar::SchemaGrammarType, true);
    } catch (const SAXParseException& problem) {
        throw Exceptions::InvalidFormat(
            toUtf8(problem.getSystemId()) + ": " + toError(problem).describe(), CORVID_HERE);
    } catch (const Enough&) {
        throw Exceptions::InvalidFormat("schemas: " + problems.take().front().describe(),
                                        CORVID_HERE);
    }
}

SchemaValidator::SchemaValidator(std::unique_ptr<State> state) : state_(std::move(state)) {}

std::unique_ptr<SchemaValidator> SchemaValidator::fromPrepared(const unsigned char* bytes,
                                                               std::size_t length,
                                                               std::uint64_t origin) {
    Initializer::instance();
    auto state = std::make_unique<State>();
    if (!readGrammars(bytes, length, origin, state->pool)) {
        return nullptr;
    }
    return std::unique_ptr<SchemaValidator>(new SchemaValidator(std::move(state)));
}

std::string SchemaValidator::prepared(std::uint64_t origin) const {
    return writeGrammars(state_->pool, origin);
}

SchemaValidator::~SchemaValidator() = default;

std::vector<ValidityError> SchemaValidator::validate(const unsigned char* bytes, std::size_t length,
                                                     std::size_t most) const {
    const auto reader = createReader(state_->pool);
    const std::vector<SchemaText> none;
    Imports imports(none);
    reader->setEntityResolver(&imports);
    Collector found(most);
    reader->setErrorHandler(&found);
    reader->setContentHandler(&found);
    reader->setLexicalHandler(&found);
    try {
        const auto document = openBuffer(bytes, length);
        reader->parse(ScannedInput(*document));
    } catch (const Enough&) {
        // What was found is all that is wanted.
    }
    return found.take();
}

} // namespace Corvid::XMLUtils
