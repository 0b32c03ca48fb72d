#pragma once

#include "XMLBuilder/reader/nodes/DocumentNode.h"

#include <cstddef>
#include <memory>
#include <string>

namespace Corvid::DataIO {
class DataSource;
}

namespace Corvid::XMLBuilder {

/// A processing instruction of a document.
struct Instruction {
    std::string target;     ///< UTF-8
    std::string data;       ///< what follows the target and white space; UTF-8
    std::size_t line = 0;   ///< from 1
    std::size_t column = 0; ///< from 1; 0 where it is not known
};

/// Gets a document piece by piece.
class StreamHandler {
public:
    virtual ~StreamHandler() = default;

    /// A processing instruction, wherever it is.
    virtual void instruction(const Instruction& instruction) = 0;
    /// The root begins.
    /// @param root  without children; stays until the end of the document.
    virtual void beginRoot(const DocumentNode& root) = 0;
    /// A child of the root is complete; it stays until the call returns.
    virtual void childOfRoot(const DocumentNode& child) = 0;
    /// Whether the children of a child of the root are to be given one by one instead, because
    /// there may be many; asked when it begins, without its children.
    virtual bool isContainer(const DocumentNode& child) = 0;
    /// A child of such a container is complete; its parent is the container.
    virtual void childOfContainer(const DocumentNode& child) = 0;
    /// There is text in the root or a container, outside of their children.
    virtual void strayText(const DocumentNode& text) = 0;
    /// The document is complete. The root and the names of all nodes stay until the call returns.
    virtual void endDocument() = 0;
};

/// Reads a document with expat, in blocks: never more of it is in memory than a child of the root.
///
/// Opens nothing else and refuses document types. Takes UTF-8, UTF-16, ISO 8859-1 and ASCII.
/// @throws ParseError  the document is malformed, in another encoding, or beyond a limit; the
///                     message has line and column. What the handler throws.
void parseStream(DataIO::DataSource& source, StreamHandler& handler);

} // namespace Corvid::XMLBuilder
