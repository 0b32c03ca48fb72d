#include "tools/corvid/reports/JsonStream.h"

#include "tools/corvid/reports/JsonText.h"

#include <nlohmann/json.hpp>

namespace Corvid::Tool {

void JsonStream::write(std::string_view text) {
    sink_.write(reinterpret_cast<const unsigned char*>(text.data()), text.size());
}

void JsonStream::newLine() { write("\n" + std::string(jsonIndent * open_.size(), ' ')); }

/// A value follows its key, has a line of its own in an array, else is at the front.
void JsonStream::beginValue() {
    if (!followsKey_ && !open_.empty()) {
        write(open_.back().isEmpty ? "" : ",");
        open_.back().isEmpty = false;
        newLine();
    }
    followsKey_ = false;
}

void JsonStream::begin(char front, char end) {
    beginValue();
    write({&front, 1});
    open_.push_back({end, true});
}

void JsonStream::end() {
    const Level level = open_.back();
    open_.pop_back();
    if (!level.isEmpty) {
        newLine();
    }
    write({&level.end, 1});
    if (open_.empty()) {
        write("\n");
    }
}

void JsonStream::key(std::string_view name) {
    beginValue();
    write(jsonText(name) + ": ");
    followsKey_ = true;
}

void JsonStream::value(const nlohmann::ordered_json& whole) {
    beginValue();
    // Texts hold no line feed as it is, so that each one ends a line of the layout.
    const std::string text = jsonText(whole);
    std::size_t begin = 0;
    for (std::size_t end = text.find('\n'); end != std::string::npos;
         begin = end + 1, end = text.find('\n', begin)) {
        write(std::string_view(text).substr(begin, end - begin));
        newLine();
    }
    write(std::string_view(text).substr(begin));
}

void JsonStream::member(std::string_view name, const nlohmann::ordered_json& whole) {
    key(name);
    value(whole);
}

} // namespace Corvid::Tool
