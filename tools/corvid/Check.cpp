#include "tools/corvid/Check.h"

#include "editing/RoundTrip.h"
#include "host/dataio/BufferedSink.h"
#include "tools/corvid/ExitStatus.h"
#include "tools/corvid/KeptToEnd.h"
#include "tools/corvid/batch/CountedSource.h"
#include "tools/corvid/batch/ReadFiles.h"
#include "tools/corvid/output/Output.h"
#include "tools/corvid/reports/CheckJson.h"
#include "tools/corvid/reports/JsonText.h"
#include "tools/corvid/terminal/Messages.h"

#include <new>
#include <nlohmann/json.hpp>
#include <utility>

namespace Corvid::Tool {

namespace {

/// All models; see keptToEnd().
struct Leftovers {
    mxf::HeaderMetadata header;
    Editing::RoundTrip trip;
};

void compare(const ClipOptions& clip, const DictionaryPointer& dictionary, std::size_t listed,
             FileTask& task, CheckedFile& checked) {
    mxf::File file(openCounted(clip, task), dictionary, task.messages);
    const Leftover<Leftovers> work(task.isOneOfMany);
    work->header = readMetadata(file, clip);
    checked.cutOffAt = work->header.cutOffAt;
    work->trip = Editing::compareWithRoundTrip(*work->header.metadata, listed);
    checked.comparison = std::move(static_cast<Editing::Comparison&>(work->trip));
}

CheckedFile checkFile(const CheckOptions& options, const DictionaryPointer& dictionary,
                      std::size_t listed, FileTask& task) {
    Messages& messages = task.messages;
    ClipOptions clip = options.clip;
    clip.path = task.path;
    CheckedFile checked;
    checked.file = messages.file();
    const int status = guard(
        [&] {
            try {
                compare(clip, dictionary, listed, task, checked);
            } catch (const std::bad_alloc&) {
                checked.lacksMemory = true;
                throw;
            }
        },
        messages);
    if (status == exitDone) {
        checked.result = resultOf(checked.comparison, checked.cutOffAt.has_value());
    } else {
        checked.result = status == exitNoFile ? CheckResult::unreadable : CheckResult::refused;
        checked.error = messages.lastError();
    }
    checked.warnings = messages.warnings();
    return checked;
}

/// How many differences of a kind are listed.
std::size_t listedOfAKind(const CheckOptions& options) {
    return options.all    ? Editing::Differences::mostListedAtAll
           : options.json ? Editing::Differences::mostListed
                          : shownOfAKind;
}

void print(const CheckedFile& file, const CheckOptions& options, FileTask& task) {
    if (!options.json) {
        writeWhole(task.output, toText(file, options.colours));
    } else if (task.isOneOfMany) {
        writeWhole(task.output, jsonLine(toJson(file)) + "\n");
    } else {
        DataIO::BufferedSink buffer(task.output);
        CheckTally tally;
        tally.add(file.result);
        CheckJson report(buffer);
        report.add(file);
        report.finish(tally);
        buffer.flush();
        task.output.commit();
    }
}

void work(const CheckOptions& options, const DictionaryPointer& dictionary, FileTask& task) {
    const CheckedFile file = checkFile(options, dictionary, listedOfAKind(options), task);
    task.verdict = static_cast<unsigned char>(file.result);
    print(file, options, task);
    using Cause = EndedWith::Cause;
    switch (file.result) {
    case CheckResult::lossless:
        refuseWarnings(options.warningsAsErrors, task.messages);
        return;
    case CheckResult::cutOff:
    case CheckResult::different:
        throw EndedWith{exitRefused, Cause::different};
    case CheckResult::refused:
        throw EndedWith{exitRefused, file.lacksMemory ? Cause::noMemory : Cause::other};
    case CheckResult::unreadable:
    case CheckResult::crashed:
        throw EndedWith{exitNoFile};
    }
}

} // namespace

void check(const CheckOptions& options, Messages& messages) {
    CheckTally tally;
    BatchWork many;
    many.suffix = options.json ? ".json" : ".txt";
    many.count = [&tally](const FileResult& result) {
        tally.add(result.facts.status == FileStatus::crashed
                      ? CheckResult::crashed
                      : static_cast<CheckResult>(result.facts.verdict));
    };
    const auto printTally = [&] {
        if (isBatch(options.batch) && !options.json) {
            printText(toText(tally));
        }
    };
    try {
        readFiles(
            options.batch, options.clip.dictionaries, std::move(many),
            [&options](const DictionaryPointer& dictionary, FileTask& task) {
                work(options, dictionary, task);
            },
            messages);
    } catch (const EndedWith&) {
        printTally();
        throw;
    }
    printTally();
}

} // namespace Corvid::Tool
