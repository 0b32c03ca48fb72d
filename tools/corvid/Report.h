#pragma once

#include "tools/corvid/batch/BatchOptions.h"
#include "tools/corvid/input/Clip.h"

#include <cstdint>
#include <string>

namespace Corvid::Tool {

class Messages;

/// Which bytes of values a report holds.
enum class RawBytes : unsigned char {
    automatic, ///< all, or of each value the first ones where there is much metadata
    all,
};

/// The most sets of which a report holds all bytes, if nobody asks for more.
constexpr std::size_t mostSetsWithAllBytes = 10'000;
/// The most bytes of metadata of which it holds all, likewise: a set may have 256 MiB.
constexpr std::uint64_t mostMetadataWithAllBytes = 32 * 1024 * 1024;
/// The bytes of each value that it holds where there is more.
constexpr std::size_t rawBytesOfMany = 64;

/// The options of `corvid report`.
struct ReportOptions {
    BatchOptions batch; ///< the files; two without other options are compared
    ClipOptions clip;   ///< how each of them is read; its path does not matter
    std::string output = "-";
    RawBytes raw = RawBytes::automatic;
    bool force = false; ///< whether the result may replace any MXF file
    bool warningsAsErrors = false;
};

/// Writes what an MXF file holds as a page for browsers, of two files one page with what differs.
/// @throws IOError, BaseException  as guard() takes them.
void report(const ReportOptions& options, Messages& messages);

} // namespace Corvid::Tool
