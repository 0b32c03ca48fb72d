#include "XMLBuilder/XMLBuilder.h"

#include "XMLBuilder/format/Namespaces.h"
#include "XMLBuilder/writer/Document.h"
#include "XMLBuilder/writer/sinks/DomSink.h"
#include "host/metadata/PartitionMetadata.h"
#include "host/xmlutils/Initializer.h"
#include "host/xmlutils/Serialise.h"
#include "host/xmlutils/XmlText.h"

#include <boost/thread/lock_guard.hpp>
#include <boost/thread/mutex.hpp>
#include <new>

namespace Corvid::XMLBuilder {

namespace {

using Metadata::MetadataSet;
using Metadata::PartitionMetadata;
using DocumentHolder = Templates::auto_ptr<xercesc::DOMNode>;

/// Never destroyed: the destructor of a global of the application may make the last call of all.
boost::mutex& writerLock() {
    alignas(boost::mutex) static unsigned char memory[sizeof(boost::mutex)];
    static auto& lock = *new (memory) boost::mutex;
    return lock;
}

/// The frame that every document is built in.
/// @param findStart  gives the set to start from, or null.
template <class FindStart>
DocumentHolder build(PartitionMetadata* partition, bool referencesAsValues, bool skipNonStructural,
                     FindStart findStart) {
    const boost::lock_guard<boost::mutex> locked(writerLock());
    XMLUtils::Initializer::instance();
    if (partition == nullptr) {
        return {};
    }
    const MetadataSet* const start = findStart();
    if (start == nullptr) {
        // By contract there is a document that nobody gets, and that is left to the process.
        DomSink().startElement({Names::s377m.uri, Names::root});
        return {};
    }
    // What can be refused is refused before the document is made: one that an exception leaves
    // unfinished is left to the process.
    const DocumentPlan plan(*partition, *start, {referencesAsValues, skipNonStructural});
    DomSink sink;
    writeDocument(plan, sink);
    return sink.document();
}

void toText(DocumentHolder document, XMLUtils::EncodingType encoding, Utf16Text& out) {
    if (document) {
        XMLUtils::domToBuffer(document.get(), out, encoding);
    }
}

} // namespace

const XMLUtils::UnicodeString& getNamespaceURI() {
    static const XMLUtils::UnicodeString uri(XMLUtils::fromXml(Names::s377m.uri));
    return uri;
}

const XMLUtils::UnicodeString& getPrefix() {
    static const XMLUtils::UnicodeString prefix(XMLUtils::fromXml(Names::s377m.prefix));
    return prefix;
}

DocumentHolder partition2XML(PartitionMetadata* partition, bool referencesAsValues,
                             bool skipNonStructural) {
    return build(partition, referencesAsValues, skipNonStructural,
                 [partition]() -> const MetadataSet* {
                     const auto prefaces =
                         partition->find(Metadata::Structural::StructuralMetadataKeys::preface());
                     return prefaces.empty() ? nullptr : prefaces.front();
                 });
}

DocumentHolder partition2XML(PartitionMetadata* partition, const MetadataSet* start,
                             bool referencesAsValues, bool skipNonStructural) {
    return build(partition, referencesAsValues, skipNonStructural, [start] { return start; });
}

void partition2XML(PartitionMetadata* partition, bool referencesAsValues, bool skipNonStructural,
                   XMLUtils::EncodingType encoding, Utf16Text& out) {
    toText(partition2XML(partition, referencesAsValues, skipNonStructural), encoding, out);
}

void partition2XML(PartitionMetadata* partition, const MetadataSet* start, bool referencesAsValues,
                   bool skipNonStructural, XMLUtils::EncodingType encoding, Utf16Text& out) {
    toText(partition2XML(partition, start, referencesAsValues, skipNonStructural), encoding, out);
}

} // namespace Corvid::XMLBuilder
