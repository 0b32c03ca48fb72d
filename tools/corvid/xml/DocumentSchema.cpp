#include "tools/corvid/xml/DocumentSchema.h"

#include "XMLBuilder/schema/DocumentValidator.h"
#include "host/base/Exceptions.h"
#include "host/base/Text.h"
#include "host/xmlutils/XmlText.h"
#include "tools/corvid/terminal/Messages.h"

#include <algorithm>
#include <xercesc/sax/SAXParseException.hpp>

namespace Corvid::Tool {

namespace {

/// People mend some errors and try again.
constexpr std::size_t mostErrors = 20;

std::vector<XMLUtils::ValidityError> errorsOf(const XMLUtils::SchemaValidator& validator,
                                              const unsigned char* bytes, std::size_t length) {
    try {
        return validator.validate(bytes, length, mostErrors + 1);
    } catch (const xercesc::SAXParseException& broken) {
        throw Exceptions::ParseError(XMLUtils::fromXml(broken.getMessage()), CORVID_HERE);
    }
}

} // namespace

void validateDocument(const unsigned char* bytes, std::size_t length,
                      const MetaMetadata::Dictionary& dictionary, Messages& messages) {
    // The last one is kept until the process ends: to take it apart costs time and brings nothing.
    static std::unique_ptr<XMLUtils::SchemaValidator> validator;
    validator = XMLBuilder::documentValidator(dictionary);
    auto errors = errorsOf(*validator, bytes, length);
    if (errors.empty()) {
        return;
    }
    const bool more = errors.size() > mostErrors;
    errors.resize(std::min(errors.size(), mostErrors));
    for (const auto& error : errors) {
        messages.error(error.describe());
    }
    throw Exceptions::InvalidFormat("the document does not follow its schema in " +
                                        std::to_string(errors.size()) +
                                        (more                 ? " places and more"
                                         : errors.size() == 1 ? " place"
                                                              : " places") +
                                        "; corvid schema writes the schema",
                                    CORVID_HERE);
}

} // namespace Corvid::Tool
