#include "XMLBuilder/XMLBuilder.h"
#include "host/base/Exceptions.h"
#include "host/dictionary/Dictionary.h"
#include "host/mxf/File.h"

#include <iostream>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: printMetadata FILE.mxf\n";
        return 2;
    }
    using namespace Corvid;
    try {
        mxf::NoWarnings warnings;
        mxf::File file(argv[1], MetaMetadata::Dictionary::builtIn(), warnings);
        const mxf::HeaderMetadata header = file.readMetadata();

        Utf16Text xml;
        XMLBuilder::partition2XML(header.metadata.get(), false, false, XMLUtils::EncodingType::utf8,
                                  xml);
        std::cout << Platform::toUtf8(xml);
    } catch (const Exceptions::BaseException& e) {
        std::cerr << argv[1] << ": " << Platform::toUtf8(e.message()) << '\n';
        return 1;
    }
}
