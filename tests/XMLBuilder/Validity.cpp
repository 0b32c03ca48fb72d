#include "tests/XMLBuilder/Validity.h"

#include "XMLBuilder/schema/DocumentValidator.h"

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
        validator = XMLBuilder::documentValidator(dictionary);
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
