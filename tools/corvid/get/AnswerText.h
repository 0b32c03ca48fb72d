#pragma once

#include "tools/corvid/get/Question.h"

#include <nlohmann/json_fwd.hpp>

namespace Corvid::Tool {

/// The answers to the questions about a file, in their order.
using AnswerTable = std::vector<Answers>;

/// A value on each line.
/// @param front  comes before each.
/// @param end    after each: a line break, or a zero.
std::string answerLines(const AnswerTable& table, const std::string& front, char end);

/// A line of CSV (RFC 4180). Several values of one cell have "; " between them.
/// @param isForSpreadsheet  whether a cell that a spreadsheet would take for a formula gets an
///     apostrophe in front, which shows that it is text.
std::string csvLine(const std::vector<std::string>& cells, bool isForSpreadsheet);
std::vector<std::string> cellsOf(const AnswerTable& table);

/// {"file": ..., "answers": [{"path": ..., "values": [...]}]}
nlohmann::ordered_json answerJson(const std::string& file, const std::vector<Question>& questions,
                                  const AnswerTable& table,
                                  const Metadata::PartitionDictionary& tags);

} // namespace Corvid::Tool
