#include "tools/corvid/Diff.h"

#include "editing/ThroughXml.h"
#include "editing/change/FindChanges.h"
#include "editing/change/MatchSets.h"
#include "tools/corvid/ExitStatus.h"
#include "tools/corvid/ReadDocument.h"
#include "tools/corvid/batch/CountedSource.h"
#include "tools/corvid/batch/OutputFolder.h"
#include "tools/corvid/batch/ReadFiles.h"
#include "tools/corvid/input/DocumentFile.h"
#include "tools/corvid/output/OpenOutput.h"
#include "tools/corvid/output/Output.h"
#include "tools/corvid/remote/Address.h"
#include "tools/corvid/reports/ChangeReport.h"
#include "tools/corvid/reports/DocumentReport.h"
#include "tools/corvid/reports/JsonText.h"
#include "tools/corvid/terminal/Messages.h"
#include "tools/corvid/terminal/Printable.h"
#include "tools/corvid/terminal/UsageError.h"

#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <unistd.h>

namespace Corvid::Tool {

namespace {

using Holder = Templates::auto_ptr<Metadata::PartitionMetadata>;

/// One of the two.
struct Side {
    Holder metadata;
    std::optional<Editing::DocumentContent> document; ///< nothing for an MXF file
};

Side readSide(const std::string& path, const ClipOptions& clips,
              const DictionaryPointer& dictionary, FileTask& task) {
    ClipOptions clip = clips;
    clip.path = path;
    auto source = openCounted(clip, task);
    if (isMxfFile(*source)) {
        mxf::File file(std::move(source), dictionary, task.messages);
        return {std::move(readMetadata(file, clip).metadata), std::nullopt};
    }
    DocumentFile file(std::move(source));
    auto document =
        readStrictly(file, dictionary, Editing::DocumentIdentifiers::written, task.messages);
    report(document, task.messages);
    return {std::move(document.metadata), document.content};
}

/// To status 1, which means that files differ, no failure leads.
Side readOrEnd(const std::string& path, const ClipOptions& clips,
               const DictionaryPointer& dictionary, FileTask& task) {
    task.messages.setFile(path);
    try {
        return readSide(path, clips, dictionary, task);
    } catch (const EndedWith&) {
        throw EndedWith{exitNoFile};
    } catch (const Exceptions::BaseException& error) {
        task.messages.error(Platform::toUtf8(error.message()));
        throw EndedWith{exitNoFile};
    }
}

/// A file becomes what its document would say, in the form of the other one.
void takeForm(Side& file, const Side& document) {
    if (!file.document && document.document) {
        file.metadata = throughXml(*file.metadata, *document.document);
    }
}

/// What is compared, and how people call it.
struct Pair {
    std::string before, after;
};

std::string textOf(const Pair& pair, const Editing::Changes& changes, std::size_t others,
                   const DictionaryPointer& dictionary, bool isOneOfMany) {
    const bool isSame = changes.empty() && others == 0;
    const std::string text = toText(changes, others, *dictionary);
    return isOneOfMany ? printable(withoutSecrets(pair.before)) + ":" + (isSame ? " " : "\n") + text
                       : text;
}

void compare(const Pair& pair, const DiffOptions& options, const DictionaryPointer& dictionary,
             FileTask& task) {
    Side before = readOrEnd(pair.before, options.clips, dictionary, task);
    Side after = readOrEnd(pair.after, options.clips, dictionary, task);
    takeForm(before, after);
    takeForm(after, before);
    const std::size_t others = Editing::matchSets(*before.metadata, *after.metadata);
    const Editing::Changes changes = Editing::findChanges(*before.metadata, *after.metadata);
    const bool isSame = changes.empty() && others == 0;
    task.messages.flush();
    if (options.json) {
        const nlohmann::ordered_json json{{"before", withoutSecrets(pair.before)},
                                          {"after", withoutSecrets(pair.after)},
                                          {"same", isSame},
                                          {"otherInstanceUIDs", others},
                                          {"sets", toJson(changes, *dictionary)}};
        writeWhole(task.output, (task.isOneOfMany ? jsonLine(json) : jsonText(json)) + "\n");
    } else {
        writeWhole(task.output, textOf(pair, changes, others, dictionary, task.isOneOfMany));
    }
    if (!isSame) {
        throw EndedWith{exitRefused, EndedWith::Cause::different};
    }
}

/// The file of the same path in a folder, or the document that to-xml has made of it there.
std::string counterpart(const std::string& folder, const std::string& path) {
    const std::string file = OutputFolder(folder, "").pathOf(path);
    std::error_code error;
    return std::filesystem::exists(file, error) ? file : file + ".xml";
}

void diffWithFolder(const DiffOptions& options, Messages& messages) {
    BatchWork many;
    many.suffix = options.json ? ".json" : ".txt";
    BatchOptions batch = options.batch;
    batch.isAlwaysMany = true;
    batch.fingerprint += options.folder;
    many.other = [&options](const std::string& path) {
        return leadsUpwards(path) ? "" : counterpart(options.folder, path);
    };
    readFiles(
        batch, options.clips.dictionaries, std::move(many),
        [&options](const DictionaryPointer& dictionary, FileTask& task) {
            if (leadsUpwards(task.path)) {
                throw Exceptions::InvalidArgument("'..' would lead out of " + options.folder,
                                                  CORVID_HERE);
            }
            compare({task.path, counterpart(options.folder, task.path)}, options, dictionary, task);
        },
        messages);
}

} // namespace

void diff(const DiffOptions& options, Messages& messages) {
    if (!options.folder.empty()) {
        diffWithFolder(options, messages);
        return;
    }
    if (options.before == "-" && options.after == "-") {
        throw UsageError{"only one of both can be standard input"};
    }
    protectInputs(inputsOf({options.before, options.after}, options.clips.dictionaries));
    const auto dictionary = loadDictionary(options.clips.dictionaries);
    DescriptorOutput output(STDOUT_FILENO, "standard output");
    FileTask task{options.before, output, messages};
    compare({options.before, options.after}, options, dictionary, task);
}

} // namespace Corvid::Tool
