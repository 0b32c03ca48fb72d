#include "XMLBuilder/writer/Document.h"

#include "XMLBuilder/writer/DarkWriter.h"
#include "XMLBuilder/writer/ToXMLMetadataSetVisitor.h"
#include "XMLBuilder/writer/sinks/TextSink.h"
#include "host/metadata/MetadataSet.h"
#include "host/xmlutils/TextEncoder.h"

#include <map>

namespace Corvid::XMLBuilder {

namespace {

constexpr const char16_t* declarationUri = u"http://www.w3.org/2000/xmlns/";

/// Starts the root with the declarations of the namespaces. Of two for one prefix the last in the
/// order of the URIs stays.
void startRoot(const NamespaceMap& namespaces,
               std::map<std::u16string, const char16_t*>& declarations, DocumentSink& sink) {
    const auto declare = [&](std::u16string_view prefix, const char16_t* uri) {
        declarations[u"xmlns:" + std::u16string(prefix)] = uri;
    };
    declare(Names::s377m.prefix, Names::s377m.uri);
    for (const auto& [uri, prefix] : namespaces) {
        if (uri != Names::s377m.uri) {
            declare(prefix, uri.c_str());
        }
    }
    std::vector<DocumentSink::Attribute> attributes;
    attributes.reserve(declarations.size());
    for (const auto& [qualified, uri] : declarations) {
        attributes.push_back({{declarationUri, qualified.c_str()}, uri});
    }
    sink.startElement({Names::s377m.uri, Names::root}, attributes.data(), attributes.size());
}

void writeContainer(const DocumentPlan& plan, DocumentSink& sink) {
    sink.startElement({Names::groups.uri, Names::floatingDarkMetadata});
    ToXMLMetadataSetVisitor writer(plan, plan.floatingPass(), sink);
    for (const auto& each : plan.floating()) {
        if (each.set != nullptr) {
            each.set->accept(writer);
        } else {
            writeDarkMetadata(each, sink);
        }
    }
    sink.endElement();
}

} // namespace

void writeDocument(const DocumentPlan& plan, DocumentSink& sink) {
    // Sinks use names until the document is complete.
    std::map<std::u16string, const char16_t*> declarations;
    startRoot(plan.namespaces(), declarations, sink);
    ToXMLMetadataSetVisitor writer(plan, plan.mainPass(), sink);
    for (const auto* const set : plan.sets()) {
        set->accept(writer);
    }
    if (plan.hasContainer()) {
        writeContainer(plan, sink);
    }
    sink.endElement();
}

void writeDocumentText(const DocumentPlan& plan, XMLUtils::EncodingType encoding,
                       XMLUtils::Layout layout, XMLUtils::InvalidCharacters& invalid,
                       DataIO::DataSink& sink, std::string_view inFront) {
    XMLUtils::TextEncoder out(encoding, sink);
    out.byteOrderMark();
    XMLUtils::MarkupWriter markup(layout, invalid, out);
    markup.startDocument(encoding, inFront);
    TextSink text(markup);
    writeDocument(plan, text);
    markup.endDocument();
}

} // namespace Corvid::XMLBuilder
