#include "editing/compare/ShortValue.h"

#include "host/base/Hex.h"
#include "host/base/Shortened.h"
#include "host/dataio/Memory.h"
#include "host/metadata/SimpleValue.h"
#include "host/types/Types.h"

#include <algorithm>
#include <optional>

namespace Corvid::Editing {

namespace {

constexpr std::size_t longestText = 60; // in bytes of UTF-8
constexpr std::size_t longestBytes = 30;

struct Text : Types::Visitors::NullVisitor {
    using NullVisitor::visit;
    void visit(const Types::UTF16String& text) override { found = Platform::toUtf8(text.value()); }
    void visit(const Types::ISO7String& text) override {
        found = Platform::toUtf8(Platform::widen(text.value()));
    }
    std::optional<std::string> found;
};

std::string shortBytes(const Metadata::Element& element) {
    DataIO::Memory::MemoryDataSink sink(element.serializedSize());
    element.serialize(sink);
    if (sink.serializedSize() == 0) {
        return "no bytes";
    }
    const std::size_t shown = std::min(sink.serializedSize(), longestBytes);
    return Hex::encoded<std::string>(sink.rawBuffer(), shown, Hex::lower) +
           (sink.serializedSize() > longestBytes ? "..." : "");
}

} // namespace

std::string shortValue(const Metadata::Element& element) {
    Text text;
    if (const auto* const value = simpleValue(&element)) {
        value->accept(text);
    }
    return text.found ? "\"" + shortened(*text.found, longestText) + "\"" : shortBytes(element);
}

} // namespace Corvid::Editing
