// Makes a document of a file's header metadata and prints what an XPath expression finds in it:
// (in a build of Corvid with XQilla)
//   queryDocument clip.mxf '//s377m:TimelineTrack[rp210:Origin = 0]/rp210:TrackID'

#include "XMLBuilder/XMLBuilder.h"
#include "host/dictionary/Dictionary.h"
#include "host/mxf/File.h"
#include "host/xmlutils/ExceptionText.h"
#include "host/xmlutils/FindNodes.h"
#include "host/xmlutils/Initializer.h"

#include <iostream>
#include <xercesc/dom/DOMNode.hpp>
#include <xercesc/util/TransService.hpp>

using namespace Corvid;

namespace {

struct PrintWarnings : mxf::WarningSink {
    void warn(const mxf::Warning& warning) override {
        std::cerr << "warning: " << warning.message() << '\n';
    }
};

std::string utf8(const XMLCh* text) {
    const xercesc::TranscodeToStr transcoded(text, "UTF-8");
    return {reinterpret_cast<const char*>(transcoded.str()), transcoded.length()};
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: queryDocument FILE.mxf XPATH\n";
        return 2;
    }
    try {
        // Documents that are made after this answer XPath.
        XMLUtils::Initializer::instance().domImplementation();

        PrintWarnings warnings;
        mxf::File file(argv[1], MetaMetadata::Dictionary::builtIn(), warnings);
        const mxf::HeaderMetadata header = file.readMetadata();
        const auto document = XMLBuilder::partition2XML(header.metadata.get(), false, false);
        if (!document) {
            std::cerr << argv[1] << ": there is no Preface\n";
            return 1;
        }
        for (const xercesc::DOMNode* node : XMLUtils::findNodes(*document, argv[2])) {
            std::cout << utf8(node->getNodeName()) << ": " << utf8(node->getTextContent()) << '\n';
        }
    } catch (...) {
        std::cerr << argv[1] << ": " << XMLUtils::currentMessage() << '\n';
        return 1;
    }
}
