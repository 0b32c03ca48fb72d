#include "tools/corvid/Diff.h"

#include "editing/ThroughXml.h"
#include "editing/change/FindChanges.h"
#include "editing/change/MatchSets.h"
#include "host/dataio/OpenSource.h"
#include "tools/corvid/ExitStatus.h"
#include "tools/corvid/ReadDocument.h"
#include "tools/corvid/input/DocumentFile.h"
#include "tools/corvid/output/OpenOutput.h"
#include "tools/corvid/output/Output.h"
#include "tools/corvid/reports/ChangeReport.h"
#include "tools/corvid/reports/DocumentReport.h"
#include "tools/corvid/reports/JsonText.h"
#include "tools/corvid/terminal/Messages.h"
#include "tools/corvid/terminal/UsageError.h"

#include <nlohmann/json.hpp>
#include <optional>

namespace Corvid::Tool {

namespace {

using Dictionary = Templates::SharedPtr<MetaMetadata::Dictionary>;
using Holder = Templates::auto_ptr<Metadata::PartitionMetadata>;

/// One of the two.
struct Side {
    Holder metadata;
    std::optional<Editing::DocumentContent> document; ///< nothing for an MXF file
};

Side readSide(const std::string& path, const ClipOptions& clips, const Dictionary& dictionary,
              Messages& messages) {
    auto source = DataIO::openSource(path);
    if (isMxfFile(*source)) {
        ClipOptions clip = clips;
        clip.path = path;
        mxf::File file(std::move(source), dictionary, messages);
        return {std::move(readMetadata(file, clip, messages).metadata), std::nullopt};
    }
    DocumentFile file(std::move(source));
    auto document = readStrictly(file, dictionary, Editing::DocumentIdentifiers::written, messages);
    report(document, messages);
    return {std::move(document.metadata), document.content};
}

/// To status 1, which means that files differ, no failure leads.
Side readOrEnd(const std::string& path, const ClipOptions& clips, const Dictionary& dictionary,
               Messages& messages) {
    messages.setFile(path);
    try {
        return readSide(path, clips, dictionary, messages);
    } catch (const EndedWith&) {
        throw EndedWith{exitNoFile};
    } catch (const Exceptions::BaseException& error) {
        messages.error(Platform::toUtf8(error.message()));
        throw EndedWith{exitNoFile};
    }
}

/// A file becomes what its document would say, in the form of the other one.
void takeForm(Side& file, const Side& document) {
    if (!file.document && document.document) {
        file.metadata = throughXml(*file.metadata, *document.document);
    }
}

std::string identifiersText(std::size_t count) {
    return count == 0   ? ""
           : count == 1 ? "1 set has another InstanceUID\n"
                        : std::to_string(count) + " sets have other InstanceUIDs\n";
}

} // namespace

void diff(const DiffOptions& options, Messages& messages) {
    if (options.before == "-" && options.after == "-") {
        throw UsageError{"only one of both can be standard input"};
    }
    protectInputs(inputsOf({options.before, options.after}, options.clips.dictionaries));
    const auto dictionary = loadDictionary(options.clips.dictionaries);
    Side before = readOrEnd(options.before, options.clips, dictionary, messages);
    Side after = readOrEnd(options.after, options.clips, dictionary, messages);
    takeForm(before, after);
    takeForm(after, before);
    const std::size_t others = Editing::matchSets(*before.metadata, *after.metadata);
    const Editing::Changes changes = Editing::findChanges(*before.metadata, *after.metadata);
    const bool isSame = changes.empty() && others == 0;
    messages.flush();
    if (options.json) {
        const nlohmann::ordered_json json{{"before", options.before},
                                          {"after", options.after},
                                          {"same", isSame},
                                          {"otherInstanceUIDs", others},
                                          {"sets", toJson(changes, *dictionary)}};
        printText(jsonText(json) + "\n");
    } else {
        printText(isSame ? "no difference\n"
                         : toText(changes, *dictionary) + identifiersText(others));
    }
    if (!isSame) {
        throw EndedWith{exitRefused};
    }
}

} // namespace Corvid::Tool
