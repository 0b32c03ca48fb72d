#pragma once

#include <cstddef>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace Corvid::Testing {

/// What an operation takes.
enum class InputKind : unsigned char {
    mxf,        ///< an MXF file
    xml,        ///< a document
    dictionary, ///< a dictionary beside the built-in one
    files,      ///< so many small MXF files on one command line
};

/// Something of which an input may have many.
struct Dimension {
    std::string name;
    InputKind kind;
    /// The smallest of the three numbers that are measured, each twice the one before. Large enough
    /// that work for each pair among them shows beside the work for each one.
    std::size_t least;
    /// The bytes of an input with so many of it. Of `InputKind::files` it is one of the files.
    std::function<std::string(std::size_t)> make;
    /// The most that a limit of Corvid lets pass.
    std::size_t most = std::numeric_limits<std::size_t>::max();
};

/// All of them. Another dimension is another row in one of the lists.
const std::vector<Dimension>& dimensions();

std::vector<Dimension> setDimensions();      ///< sets and references in MXF files
std::vector<Dimension> propertyDimensions(); ///< what sets hold in MXF files
std::vector<Dimension> fileDimensions();     ///< what is around sets in MXF files
std::vector<Dimension> documentDimensions(); ///< of documents, as XML
std::vector<Dimension> contentDimensions();  ///< of documents, as metadata
std::vector<Dimension> instructionDimensions();
std::vector<Dimension> dictionaryDimensions();

} // namespace Corvid::Testing
