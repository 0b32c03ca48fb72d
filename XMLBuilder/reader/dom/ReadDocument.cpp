#include "XMLBuilder/reader/dom/ReadDocument.h"

#include "XMLBuilder/reader/ReadSet.h"
#include "XMLBuilder/reader/dom/DomNodes.h"
#include "XMLBuilder/reader/dom/TranslateExceptions.h"
#include "host/base/Exceptions.h"
#include "host/xmlutils/Initializer.h"
#include "host/xmlutils/LoadDocument.h"

#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <memory>

namespace Corvid::XMLBuilder {

namespace {

using xercesc::DOMDocument;
using xercesc::DOMLSParser;

struct Release {
    void operator()(DOMLSParser* parser) const { parser->release(); }
};

void readRoot(Reading& reading, const xercesc::DOMElement& root, DomNodes& nodes, SetList& sets) {
    for (const auto* child = root.getFirstElementChild(); child != nullptr;
         child = child->getNextElementSibling()) {
        readChildOfRoot(reading, nodes.copyOf(*child), sets);
    }
}

/// Throws the exception that is being handled again, with the place in its message.
[[noreturn]] void rethrowAt(const ReadingPlace& place) {
    try {
        throw;
    }
#define CORVID_RETHROW(Class, Code)                                                                \
    catch (const Exceptions::Class& error) {                                                       \
        throw Exceptions::Class(place.inFrontOf(Platform::toUtf8(error.message())), error.file(),  \
                                error.line());                                                     \
    }
    CORVID_EXCEPTION_FAMILY(CORVID_RETHROW)
#undef CORVID_RETHROW
}

/// @param load  gives the document, which belongs to the parser.
template <class Load>
SetList readPartitionMetadata(Metadata::PartitionMetadata* partition, InstanceNameTable& names,
                              Places places, Supplement* supplement, Load load) {
    if (partition == nullptr) {
        throw Exceptions::InvalidArgument("no partition to read the document into, expected one",
                                          CORVID_HERE);
    }
    const std::unique_ptr<DOMLSParser, Release> parser(
        XMLUtils::Initializer::instance().domImplementation()->createLSParser(
            xercesc::DOMImplementationLS::MODE_SYNCHRONOUS, nullptr,
            xercesc::XMLPlatformUtils::fgMemoryManager, nullptr));
    // XQilla's parsers name it again with each parse, and Xerces-C would release the old name a
    // second time should there be no memory for the new one.
    parser->getDomConfig()->setParameter(
        xercesc::XMLUni::fgXercesParserUseDocumentFromImplementation,
        static_cast<const void*>(nullptr));
    SetList sets;
    const DOMDocument& document = load(*parser);
    const auto& root = *document.getDocumentElement();
    DomNodes nodes(root);
    Reading reading(nodes.root(), &nodes, *partition, &names, supplement);
    try {
        readRoot(reading, root, nodes, sets);
    } catch (const Exceptions::BaseException&) {
        if (places == Places::untold) {
            throw;
        }
        rethrowAt(reading.place());
    }
    return sets;
}

} // namespace

SetList readBuffer(const unsigned char* bytes, std::size_t length,
                   Metadata::PartitionMetadata* partition, InstanceNameTable& names, Places places,
                   Supplement* supplement) {
    return translated(EntryPoint::buffer, [&] {
        return readPartitionMetadata(
            partition, names, places, supplement, [&](DOMLSParser& parser) -> const DOMDocument& {
                return *XMLUtils::loadCleanDocumentFromBuffer(bytes, length, parser);
            });
    });
}

SetList readFile(const Utf16Unit* path, Metadata::PartitionMetadata* partition,
                 InstanceNameTable& names) {
    return translated(EntryPoint::file, [&] {
        return readPartitionMetadata(partition, names, Places::untold, nullptr,
                                     [&](DOMLSParser& parser) -> const DOMDocument& {
                                         return *XMLUtils::loadDocumentFromFile(path, parser);
                                     });
    });
}

} // namespace Corvid::XMLBuilder
