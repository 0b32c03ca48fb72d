#pragma once

#include "tools/corvid/batch/BatchOptions.h"
#include "tools/corvid/batch/FileTask.h"
#include "tools/corvid/input/DictionaryChoice.h"

namespace Corvid::Tool {

using DictionaryPointer = Templates::SharedPtr<MetaMetadata::Dictionary>;

/// The work of a verb with one file.
using ReadFile = std::function<void(const DictionaryPointer&, FileTask&)>;

/// Reads the files that people name and prints what comes of it: one file alone in this process, on
/// standard output, many by runBatch().
///
/// @param many     what a verb says of many files, but the work.
/// @param prepare  is called once, when the dictionary is loaded and before a file is read. May be
///     empty.
/// @throws EndedWith  with the status of the worst file of many.
/// @throws UsageError, IOError, BaseException  as guard() takes them, as one file alone does.
void readFiles(const BatchOptions& options, const DictionaryChoice& dictionaries, BatchWork many,
               const ReadFile& read, Messages& messages,
               const std::function<void(const DictionaryPointer&, BatchWork&)>& prepare = {});

/// The same for a verb whose result is a document: that of one file alone goes where people want
/// it.
/// @param output  its path, as for Output::open(); "-" where nobody asked.
void writeDocuments(const BatchOptions& options, const DictionaryChoice& dictionaries,
                    const std::string& output, BatchWork many, const ReadFile& read,
                    Messages& messages);

} // namespace Corvid::Tool
