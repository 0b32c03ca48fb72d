#include "XMLBuilder/schema/Schemas.h"

#include "XMLBuilder/schema/ClassSchema.h"
#include "XMLBuilder/schema/FrameSchema.h"
#include "XMLBuilder/schema/ValueSchema.h"
#include "host/base/Text.h"
#include "host/xmlutils/Initializer.h"
#include "host/xmlutils/XmlText.h"

namespace Corvid::XMLBuilder {

namespace {

std::string toUtf8(const XMLCh* text) { return Platform::toUtf8(XMLUtils::fromXml(text)); }

} // namespace

std::vector<Schema> makeSchemas(const MetaMetadata::Dictionary& dictionary) {
    XMLUtils::Initializer::instance();
    SchemaSet schemas;
    describeValues(schemas);
    describeFrame(schemas, dictionary);
    describeProperties(schemas, dictionary);
    describeSets(schemas, dictionary);

    std::vector<Schema> finished;
    for (auto& [prefix, document] : schemas.documents()) {
        const std::string uri = toUtf8(document.root().getAttribute(u"targetNamespace"));
        finished.push_back({toUtf8(schemaFileName(prefix).c_str()), uri, document.finish()});
    }
    return finished;
}

} // namespace Corvid::XMLBuilder
