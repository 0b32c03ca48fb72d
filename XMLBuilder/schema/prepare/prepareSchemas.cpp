// Compiles the schemas of the built-in dictionary, at build time: prepareSchemas OUTPUT

#include "XMLBuilder/schema/SchemaTexts.h"
#include "host/base/Exceptions.h"
#include "host/base/Text.h"
#include "host/dictionary/BuiltInTables.h"
#include "host/dictionary/Dictionary.h"

#include <fstream>
#include <iostream>

int main(int argc, char** argv) {
    using namespace Corvid;
    if (argc != 2) {
        std::cerr << "usage: " << argv[0] << " OUTPUT\n";
        return 2;
    }
    try {
        const auto dictionary = MetaMetadata::Dictionary::builtIn();
        const XMLUtils::SchemaValidator validator(XMLBuilder::schemaTexts(*dictionary));
        std::ofstream out(argv[1], std::ios::binary);
        out << validator.prepared(MetaMetadata::builtInFingerprint());
        out.close();
        if (!out) {
            std::cerr << argv[1] << ": cannot be written\n";
            return 1;
        }
    } catch (const Exceptions::BaseException& error) {
        std::cerr << Platform::toUtf8(error.message()) << '\n';
        return 1;
    }
    return 0;
}
