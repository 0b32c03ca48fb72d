#include "tools/corvid/input/Paths.h"

#include "host/base/Exceptions.h"
#include "tools/corvid/terminal/UsageError.h"

namespace Corvid::Tool {

namespace {

template <class Result, class Parse>
std::vector<Result> parseAll(const std::vector<std::string>& texts, Parse parse) {
    std::vector<Result> results;
    results.reserve(texts.size());
    try {
        for (const std::string& text : texts) {
            results.push_back(parse(text));
        }
    } catch (const Exceptions::InvalidArgument& error) {
        throw UsageError{Platform::toUtf8(error.message())};
    }
    return results;
}

} // namespace

std::vector<Inspection::Path> parsePaths(const std::vector<std::string>& texts,
                                         const MetaMetadata::Dictionary& dictionary) {
    return parseAll<Inspection::Path>(
        texts, [&](const std::string& text) { return Inspection::parsePath(text, dictionary); });
}

std::vector<Inspection::Assignment> parseAssignments(const std::vector<std::string>& texts,
                                                     const MetaMetadata::Dictionary& dictionary) {
    return parseAll<Inspection::Assignment>(texts, [&](const std::string& text) {
        return Inspection::parseAssignment(text, dictionary);
    });
}

} // namespace Corvid::Tool
