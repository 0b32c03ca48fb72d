#include "tests/XMLBuilder/Validity.h"

#include "XMLBuilder/schema/Schemas.h"
#include "host/xmlutils/SchemaValidator.h"
#include "tests/XMLBuilder/XmlOf.h"

#include <algorithm>
#include <map>
#include <memory>

namespace Corvid::Testing {

namespace {

/// Kept for each dictionary, because to load schemas takes its time.
const XMLUtils::SchemaValidator& validatorFor(const MetaMetadata::Dictionary& dictionary) {
    static std::map<const MetaMetadata::Dictionary*, std::unique_ptr<XMLUtils::SchemaValidator>>
        validators;
    auto& validator = validators[&dictionary];
    if (!validator) {
        std::vector<XMLUtils::SchemaText> texts;
        for (const auto& schema : XMLBuilder::makeSchemas(dictionary)) {
            texts.push_back(
                {schema.fileName, toText(schema.document.get(), XMLUtils::Layout::compact)});
        }
        std::stable_partition(texts.begin(), texts.end(),
                              [](const auto& text) { return text.fileName == "s377m.xsd"; });
        validator = std::make_unique<XMLUtils::SchemaValidator>(texts);
    }
    return *validator;
}

} // namespace

std::string validityErrors(const MetaMetadata::Dictionary& dictionary,
                           const std::string& document) {
    std::string lines;
    for (const auto& error : validatorFor(dictionary)
                                 .validate(reinterpret_cast<const unsigned char*>(document.data()),
                                           document.size(), 10000)) {
        lines += error.describe() + "\n";
    }
    return lines;
}

} // namespace Corvid::Testing
