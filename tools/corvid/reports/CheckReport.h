#pragma once

#include "editing/compare/Comparison.h"
#include "tools/corvid/terminal/WarningLog.h"

#include <map>
#include <optional>

namespace Corvid::Tool {

/// What the check of a file ended with. Each is worse than the one before.
enum class CheckResult : unsigned char {
    lossless,   ///< all came back
    cutOff,     ///< all that could be read, but the metadata is cut off
    different,  ///< something was damaged
    refused,    ///< the file can't be taken to XML and back
    unreadable, ///< the file can't be read at all
    crashed,    ///< so did the process that checked it
};

/// A file that was checked.
struct CheckedFile {
    std::string file; ///< as people named it
    CheckResult result = CheckResult::lossless;
    Editing::Comparison comparison;        ///< where it came to that
    std::string error;                     ///< where it did not
    std::optional<std::uint64_t> cutOffAt; ///< of the metadata, in bytes from the front of the file
    bool lacksMemory = false;
    WarningLog warnings;
};

/// Many of them, counted.
class CheckTally {
public:
    void add(CheckResult result);
    std::size_t files() const noexcept { return files_; }
    std::size_t count(CheckResult result) const;

private:
    std::size_t files_ = 0;
    std::map<CheckResult, std::size_t> counts_;
};

/// How programs call a result.
const char* nameOf(CheckResult result);

/// The result that a comparison means.
/// @param isCutOff  whether the metadata could not be read to its end.
CheckResult resultOf(const Editing::Comparison& comparison, bool isCutOff);

/// For people: a line for the file, then its differences by kind, the real ones first. Nothing for
/// a file that could not be compared: why not has gone to standard error.
/// @param colours  whether it is coloured.
std::string toText(const CheckedFile& file, bool colours);
/// "3 files: 2 lossless, 1 different"
std::string toText(const CheckTally& tally);

/// How many differences of a kind people see, unless they ask for all.
inline constexpr std::size_t shownOfAKind = 20;

} // namespace Corvid::Tool
