#pragma once

#include "bench/WorkFolder.h"
#include "host/base/Text.h"

#include <string>

/// What programs do with the libraries, one conversion after the other. Threads may convert at the
/// same time.
namespace Corvid::Bench {

/// The files and texts that conversions read.
struct ConversionInputs {
    ConversionInputs();

    WorkFolder folder;
    const std::string xml = folder.path("document.xml");
    const std::string mxf = folder.path("whole.mxf");
    const std::string cutOff = folder.path("cut-off.mxf");
    const std::string noMxf = folder.path("none.mxf");
    Utf16Text links;
    Utf16Text nested;
    std::string nestedBytes;
};

/// Writes or reads a document, or an MXF file, of whatever kind that number stands for: sound ones
/// and broken ones take turns.
/// @throws std::runtime_error  it ends as it must not.
void convert(const ConversionInputs& inputs, std::size_t number);

/// Writes one document.
void writeDocument();

/// Lets the writer give a document up, which callers rely on: it is never released.
void giveDocumentUp();

} // namespace Corvid::Bench
