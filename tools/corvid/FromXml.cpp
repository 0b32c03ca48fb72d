#include "tools/corvid/FromXml.h"

#include "host/dataio/BufferedSink.h"
#include "host/mxf/HeaderMetadataWriter.h"
#include "inspection/SetValues.h"
#include "tools/corvid/CommandWarnings.h"
#include "tools/corvid/ExitStatus.h"
#include "tools/corvid/KeptToEnd.h"
#include "tools/corvid/ReadDocument.h"
#include "tools/corvid/input/Clip.h"
#include "tools/corvid/input/DocumentFile.h"
#include "tools/corvid/output/OpenOutput.h"
#include "tools/corvid/reports/DocumentReport.h"
#include "tools/corvid/terminal/Messages.h"
#include "tools/corvid/terminal/UsageError.h"

namespace Corvid::Tool {

namespace {

const Metadata::MetadataSet& prefaceOf(const Metadata::PartitionMetadata& metadata,
                                       Messages& messages) {
    const auto prefaces = metadata.find(Metadata::Structural::StructuralMetadataKeys::preface());
    if (prefaces.empty()) {
        throw Exceptions::InvalidFormat("the document has no Preface", CORVID_HERE);
    }
    if (prefaces.size() != 1) {
        messages.warn({mxf::WarningKinds::severalPrefaces,
                       "there are " + std::to_string(prefaces.size()) +
                           " Prefaces, expected one; the first is that of the file"});
    }
    return *prefaces.front();
}

mxf::PartitionPack packFor(const Metadata::MetadataSet& preface, std::uint32_t kagSize,
                           Messages& messages) {
    if (Inspection::find(preface, Inspection::Structural::operationalPattern) == nullptr) {
        messages.warn({CommandWarnings::noOperationalPattern,
                       "the Preface has no operational pattern, so that of the partition is "
                       "zeros"});
    }
    return mxf::headerPack(preface, kagSize);
}

Editing::DocumentMetadata read(DocumentFile& file, const FromXmlOptions& options,
                               const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary,
                               Messages& messages) {
    if (options.lenient != nullptr) {
        return options.lenient(file, dictionary, options.identifiers);
    }
    return readStrictly(file, dictionary, options.identifiers, messages);
}

} // namespace

void fromXml(const FromXmlOptions& options, Messages& messages) {
    messages.setFile(options.path);
    const auto output =
        openOutput(options.output, inputsOf({options.path}, options.dictionaries),
                   options.force ? MayReplace::everything : MayReplace::headerPartition);
    if (output->isTerminal()) {
        throw UsageError{"an MXF file can't be shown on a terminal; -o FILE writes it to a file"};
    }
    const auto dictionary = loadDictionary(options.dictionaries);
    DocumentFile file(options.path);
    const Editing::DocumentMetadata& document =
        keptToEnd<Editing::DocumentMetadata>(read(file, options, dictionary, messages));
    report(document, messages);
    const auto& preface = prefaceOf(*document.metadata, messages);
    const mxf::PartitionPack pack = packFor(preface, options.kagSize, messages);
    const mxf::HeaderMetadataWriter metadata(*document.metadata);
    refuseWarnings(options.warningsAsErrors, messages);
    DataIO::BufferedSink sink(*output);
    mxf::writeHeaderPartition(pack, metadata, sink);
    sink.flush();
    output->commit();
}

} // namespace Corvid::Tool
