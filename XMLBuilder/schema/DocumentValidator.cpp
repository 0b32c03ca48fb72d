#include "XMLBuilder/schema/DocumentValidator.h"

#include "XMLBuilder/schema/SchemaTexts.h"
#include "host/dictionary/BuiltInTables.h"
#include "host/dictionary/Dictionary.h"

namespace Corvid::XMLBuilder {

using XMLUtils::SchemaValidator;

std::unique_ptr<SchemaValidator> documentValidator(const MetaMetadata::Dictionary& dictionary,
                                                   PreparedSchemas prepared) {
    if (&dictionary == MetaMetadata::Dictionary::builtIn().get()) {
        auto validator = SchemaValidator::fromPrepared(prepared.bytes, prepared.length,
                                                       MetaMetadata::builtInFingerprint());
        if (validator) {
            return validator;
        }
    }
    return std::make_unique<SchemaValidator>(schemaTexts(dictionary));
}

} // namespace Corvid::XMLBuilder
