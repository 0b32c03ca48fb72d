#include "tools/corvid/batch/ReadFiles.h"

#include "tools/corvid/ExitStatus.h"
#include "tools/corvid/batch/Batch.h"
#include "tools/corvid/output/OpenOutput.h"
#include "tools/corvid/terminal/Messages.h"
#include "tools/corvid/terminal/UsageError.h"

#include <unistd.h>

namespace Corvid::Tool {

namespace {

void readMany(const BatchOptions& options, const DictionaryChoice& dictionaries, BatchWork many,
              const ReadFile& read, Messages& messages,
              const std::function<void(const DictionaryPointer&, BatchWork&)>& prepare) {
    protectInputs(inputsOf(options.files, dictionaries));
    std::string texts;
    const DictionaryPointer dictionary = loadDictionary(dictionaries, &texts);
    if (prepare) {
        prepare(dictionary, many);
    }
    many.dictionaries = dictionaries.files;
    many.work = [&](FileTask& task) { read(dictionary, task); };
    if (const int status = runBatch(options, many, texts, messages); status != exitDone) {
        throw EndedWith{static_cast<ExitStatus>(status)};
    }
}

} // namespace

void readFiles(const BatchOptions& options, const DictionaryChoice& dictionaries, BatchWork many,
               const ReadFile& read, Messages& messages,
               const std::function<void(const DictionaryPointer&, BatchWork&)>& prepare) {
    if (isBatch(options)) {
        readMany(options, dictionaries, std::move(many), read, messages, prepare);
        return;
    }
    messages.setFile(options.files.front());
    protectInputs(inputsOf(options.files, dictionaries));
    const DictionaryPointer dictionary = loadDictionary(dictionaries);
    if (prepare) {
        prepare(dictionary, many);
    }
    printText(many.head);
    DescriptorOutput output(STDOUT_FILENO, "standard output");
    FileTask task{options.files.front(), output, messages};
    read(dictionary, task);
}

void writeDocuments(const BatchOptions& options, const DictionaryChoice& dictionaries,
                    const std::string& output, BatchWork many, const ReadFile& read,
                    Messages& messages) {
    if (isBatch(options)) {
        if (output != "-") {
            throw UsageError{"-o is for one file; --output-dir is for several"};
        }
        readMany(options, dictionaries, std::move(many), read, messages, {});
        return;
    }
    const std::string& path = options.files.front();
    messages.setFile(path);
    const auto opened =
        openOutput(output, inputsOf({path}, dictionaries),
                   many.mayDestroy ? MayReplace::everything : MayReplace::noMxfFile);
    const DictionaryPointer dictionary = loadDictionary(dictionaries);
    FileTask task{path, *opened, messages};
    read(dictionary, task);
}

} // namespace Corvid::Tool
