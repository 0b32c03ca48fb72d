#pragma once

#include "host/dataio/Memory.h"
#include "host/xmlutils/InvalidCharacters.h"
#include "host/xmlutils/Serialise.h"

#include <string>

namespace Corvid::Testing {

/// A document as UTF-8 text.
inline std::string textOf(const xercesc::DOMNode& node) {
    XMLUtils::RefuseInvalidCharacters invalid;
    DataIO::Memory::MemoryDataSink sink;
    XMLUtils::serialise(&node, XMLUtils::EncodingType::utf8, XMLUtils::Layout::compact, invalid,
                        sink);
    return {reinterpret_cast<const char*>(sink.rawBuffer()), sink.serializedSize()};
}

} // namespace Corvid::Testing
