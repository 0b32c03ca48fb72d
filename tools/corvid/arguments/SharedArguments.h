#pragma once

#include "tools/corvid/batch/BatchOptions.h"
#include "tools/corvid/input/Clip.h"

#include <CLI/CLI.hpp>
#include <cstdint>
#include <string>
#include <vector>

/// Arguments that several verbs have.
namespace Corvid::Tool {

/// The groups of a verb's help.
constexpr const char* input = "Input";
constexpr const char* processing = "Processing";
constexpr const char* output = "Output";
constexpr const char* manyFiles = "Many files";

/// Unlike the library's own, it adds nothing to the help: the type's name shows the values.
CLI::Validator oneOf(std::vector<std::string> values);
/// A name that somebody's empty variable was to give is refused, not passed over.
CLI::Validator someName();
CLI::Validator numberFromOne(std::uint32_t greatest);

void declareDictionaries(CLI::App& verb, DictionaryChoice& choice);
/// The options of verbs that read MXF files, one or many.
void declareReading(CLI::App& verb, ClipOptions& options);
/// The files of verbs that read many: names, folders, a list.
/// @param what  the help.
void declareFiles(CLI::App& verb, BatchOptions& batch, const char* what);
/// The options of verbs that read many files, but -0.
void declareBatch(CLI::App& verb, BatchOptions& batch);
void declareZeros(CLI::App& verb, BatchOptions& batch);
/// To be called when all arguments of the verb are there.
/// @throws CLI::Error  they don't go together.
void completeBatch(const CLI::App& verb, BatchOptions& batch);
/// All of that.
void declareMany(CLI::App& verb, BatchOptions& batch);
/// @param what  the help.
void declareForce(CLI::App& verb, bool& force, const char* what);
/// @param what  the help.
void declareStrictness(CLI::App& verb, bool& wanted, const char* what);

} // namespace Corvid::Tool
