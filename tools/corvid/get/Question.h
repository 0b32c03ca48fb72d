#pragma once

#include "inspection/query/ParsePath.h"
#include "inspection/query/Query.h"
#include "tools/corvid/get/Fields.h"

#include <optional>
#include <string>
#include <vector>

namespace Corvid::Tool {

class Messages;

/// A question and the field that it names.
struct Question : Inspection::Question {
    const Field* known = nullptr; ///< nullptr for a path
};

/// What to print of each file.
/// @throws UsageError  it is no question, its field is not known, or a value follows.
Question parseQuery(const std::string& text, const MetaMetadata::Dictionary& dictionary);

/// What a file must fulfil.
/// @throws UsageError  it is no question, or its field is not known.
Question parseRequirement(const std::string& text, const MetaMetadata::Dictionary& dictionary);

/// A value that answers a question, and where it is.
struct Answer {
    std::optional<Inspection::Place> place; ///< nothing for a field
    std::size_t position = 0;               ///< in a list, from 0
    std::string text;
};
using Answers = std::vector<Answer>;

/// Answers questions about one file. What they need is read when the first one needs it.
class Answering {
public:
    /// @param file, header  borrowed.
    /// @param messages      about the file, for what is found. Borrowed.
    Answering(mxf::File& file, const mxf::HeaderMetadata& header, Messages& messages)
        : file_(file), header_(header), messages_(messages) {}

    /// @throws IOError, InvalidFormat  the partitions of the file can't be read.
    Answers answer(const Question& question);
    bool fulfils(const Question& requirement);

private:
    mxf::File& file_;
    const mxf::HeaderMetadata& header_;
    Messages& messages_;
    std::optional<Inspection::Query> query_;
    std::optional<Inspection::Summary> summary_;
};

} // namespace Corvid::Tool
