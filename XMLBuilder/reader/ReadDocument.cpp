#include "XMLBuilder/reader/ReadDocument.h"

#include "XMLBuilder/reader/DarkReader.h"
#include "XMLBuilder/reader/ReadSet.h"
#include "XMLBuilder/reader/Reading.h"
#include "XMLBuilder/reader/TranslateExceptions.h"
#include "host/base/Exceptions.h"
#include "host/xmlutils/CleanDocument.h"
#include "host/xmlutils/Initializer.h"
#include "host/xmlutils/LoadDocument.h"

#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <memory>
#include <string_view>

namespace Corvid::XMLBuilder {

namespace {

using xercesc::DOMDocument;
using xercesc::DOMLSParser;

struct Release {
    void operator()(DOMLSParser* parser) const { parser->release(); }
};

/// @param load  gives the document, which belongs to the parser.
template <class Load>
SetList readPartitionMetadata(Metadata::PartitionMetadata* partition, InstanceNameTable& names,
                              Load load) {
    if (partition == nullptr) {
        throw Exceptions::InvalidArgument("no partition to read the document into, expected one",
                                          CORVID_HERE);
    }
    const std::unique_ptr<DOMLSParser, Release> parser(
        XMLUtils::Initializer::instance().domImplementation()->createLSParser(
            xercesc::DOMImplementationLS::MODE_SYNCHRONOUS, nullptr,
            xercesc::XMLPlatformUtils::fgMemoryManager, nullptr));
    SetList sets;
    Reading reading(*partition, names);
    const DOMDocument& document = load(*parser);
    for (const auto* child = ChildSteps::firstElement(*document.getDocumentElement());
         child != nullptr; child = ChildSteps::nextElement(*child)) {
        if (!readSet(reading, *child, sets) &&
            child->getNodeName() == std::u16string_view(Names::floatingDarkMetadata)) {
            readFloatingContainer(reading, *child, sets);
        }
    }
    return sets;
}

} // namespace

SetList readBuffer(const unsigned char* bytes, std::size_t length,
                   Metadata::PartitionMetadata* partition, InstanceNameTable& names) {
    return translated(EntryPoint::buffer, [&] {
        return readPartitionMetadata(
            partition, names, [&](DOMLSParser& parser) -> const DOMDocument& {
                auto* document = XMLUtils::loadDocumentFromBuffer(bytes, length, parser);
                XMLUtils::cleanEmptyTextNodes(*document);
                return *document;
            });
    });
}

SetList readFile(const Utf16Unit* path, Metadata::PartitionMetadata* partition,
                 InstanceNameTable& names) {
    return translated(EntryPoint::file, [&] {
        return readPartitionMetadata(partition, names,
                                     [&](DOMLSParser& parser) -> const DOMDocument& {
                                         return *XMLUtils::loadDocumentFromFile(path, parser);
                                     });
    });
}

} // namespace Corvid::XMLBuilder
