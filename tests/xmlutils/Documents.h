#pragma once

#include "host/dataio/Memory.h"
#include "host/xmlutils/InvalidCharacters.h"
#include "host/xmlutils/LoadDocument.h"
#include "host/xmlutils/Serialise.h"
#include "tests/support/CodeUnits.h"

#include <filesystem>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <xercesc/dom/DOM.hpp>

/// Documents for tests: made, parsed, written and compared.
namespace Corvid::XMLUtils::Testing {

struct Releaser {
    template <class T> void operator()(T* resource) const { resource->release(); }
};
using Parser = std::unique_ptr<xercesc::DOMLSParser, Releaser>;
using Document = std::unique_ptr<xercesc::DOMDocument, Releaser>;

Parser makeParser();

/// A document without content.
Document makeDocument();

/// A document with the root `p:Root` in "urn:p", which is declared.
Document makeRootedDocument();

/// Appends an element in "urn:p", with text unless it is empty.
xercesc::DOMElement* addElement(xercesc::DOMElement& parent, const XMLCh* name,
                                const XMLCh* text = u"");

std::string written(const xercesc::DOMNode& node, EncodingType encoding = EncodingType::utf8,
                    Layout layout = Layout::compact);

xercesc::DOMDocument* load(std::string_view bytes, xercesc::DOMLSParser& parser);

/// The message of the SAXParseException that loading throws; empty when it throws none.
std::string loadingError(std::string_view bytes);

/// Everything that a document says and nothing of how: expanded names, attributes in the order of
/// their names, text with neighbouring text nodes joined. One node per line.
std::string meaningOf(const xercesc::DOMNode& top);

std::string utf8(const XMLCh* text);

using Corvid::Testing::inUnits;

/// A file that is there as long as the object.
class TemporaryFile {
public:
    explicit TemporaryFile(std::string_view bytes);
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile();

    Utf16Text path() const;

private:
    std::filesystem::path path_;
};

} // namespace Corvid::XMLUtils::Testing

namespace Corvid::XMLUtils {
inline void PrintTo(EncodingType encoding, std::ostream* to) { *to << static_cast<int>(encoding); }
} // namespace Corvid::XMLUtils
