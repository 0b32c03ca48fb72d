#pragma once

#include "XMLBuilder/XMLBuilder.h"
#include "host/dataio/Memory.h"
#include "host/xmlutils/InvalidCharacters.h"
#include "host/xmlutils/Serialise.h"
#include "host/xmlutils/XmlText.h"
#include "tests/XMLBuilder/Validity.h"
#include "tests/support/Model.h"

#include <gtest/gtest.h>
#include <xercesc/dom/DOM.hpp>

#include <string>

namespace Corvid::Testing {

/// How a test wants its document written.
struct Flags {
    bool referencesAsValues = false;
    bool skipNonStructural = false;
};

/// The document of a node as UTF-8 text without the XML declaration; empty for a null node.
inline std::string toText(const xercesc::DOMNode* node, XMLUtils::Layout layout) {
    if (node == nullptr) {
        return {};
    }
    XMLUtils::RefuseInvalidCharacters invalid;
    DataIO::Memory::MemoryDataSink sink;
    XMLUtils::serialise(node, XMLUtils::EncodingType::utf8, layout, invalid, sink);
    std::string text(reinterpret_cast<const char*>(sink.rawBuffer()), sink.serializedSize());
    const std::size_t end = text.find("?>");
    text.erase(0, text.find('<', end));
    return text;
}

/// The document of a model, which must be valid by the schema of its dictionary; empty where there
/// is none.
inline std::string xmlOf(Model& model, Flags flags = {},
                         XMLUtils::Layout layout = XMLUtils::Layout::indented) {
    const auto document = XMLBuilder::partition2XML(&model.partition, flags.referencesAsValues,
                                                    flags.skipNonStructural);
    std::string text = toText(document.get(), layout);
    if (!text.empty()) {
        EXPECT_EQ(validityErrors(model.dictionary(), text), "") << text;
    }
    return text;
}

/// The same on one line.
inline std::string compactXmlOf(Model& model, Flags flags = {}) {
    return xmlOf(model, flags, XMLUtils::Layout::compact);
}

} // namespace Corvid::Testing
