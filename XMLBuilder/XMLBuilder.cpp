#include "XMLBuilder/XMLBuilder.h"

#include "XMLBuilder/writer/Document.h"
#include "host/metadata/PartitionMetadata.h"
#include "host/xmlutils/Initializer.h"
#include "host/xmlutils/Serialise.h"
#include "host/xmlutils/XmlText.h"

#include <boost/thread/lock_guard.hpp>
#include <boost/thread/mutex.hpp>

namespace Corvid::XMLBuilder {

namespace {

using Metadata::MetadataSet;
using Metadata::PartitionMetadata;
using DocumentHolder = Templates::auto_ptr<xercesc::DOMNode>;

boost::mutex& writerLock() {
    static boost::mutex lock;
    return lock;
}

/// The frame that every document is built in.
/// @param findStart  gives the set to start from, or null; called after the document was created.
template <class FindStart>
DocumentHolder build(PartitionMetadata* partition, bool referencesAsValues, bool skipNonStructural,
                     FindStart findStart) {
    const boost::lock_guard<boost::mutex> locked(writerLock());
    XMLUtils::Initializer::instance();
    if (partition == nullptr) {
        return {};
    }
    // A document that is given up, here or because an exception passes, is left to the process.
    xercesc::DOMElement* root = createDocument(getPrefix(), getNamespaceURI());
    const Filling filling{partition, findStart(), referencesAsValues, skipNonStructural};
    return fillDocument(filling, root, XMLUtils::toXml(getNamespaceURI().utf16()));
}

void toText(DocumentHolder document, XMLUtils::EncodingType encoding, Utf16Text& out) {
    if (document) {
        XMLUtils::domToBuffer(document.get(), out, encoding);
    }
}

} // namespace

const XMLUtils::UnicodeString& getNamespaceURI() {
    static const XMLUtils::UnicodeString uri("urn:SMPTE:S377M");
    return uri;
}

const XMLUtils::UnicodeString& getPrefix() {
    static const XMLUtils::UnicodeString prefix("s377m");
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
