#include "XMLBuilder/XMLBuilder.h"
#include "host/dictionary/Dictionary.h"
#include "host/mxf/File.h"
#include "host/xmlutils/ExceptionText.h"

#include <iostream>

using namespace Corvid;

struct PrintWarnings : mxf::WarningSink {
    void warn(const mxf::Warning& warning) override {
        std::cerr << "warning: " << warning.message() << '\n';
    }
};

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: printMetadata FILE.mxf\n";
        return 2;
    }
    try {
        PrintWarnings warnings;
        mxf::File file(argv[1], MetaMetadata::Dictionary::builtIn(), warnings);
        const mxf::HeaderMetadata header = file.readMetadata();

        Utf16Text xml;
        XMLBuilder::partition2XML(header.metadata.get(), false, false, XMLUtils::EncodingType::utf8,
                                  xml);
        std::cout << Platform::toUtf8(xml);
    } catch (...) {
        std::cerr << argv[1] << ": " << XMLUtils::currentMessage() << '\n';
        return 1;
    }
}
