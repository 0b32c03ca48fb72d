#include "XMLBuilder/json/JsonWriter.h"

#include "host/base/Hex.h"
#include "host/base/Unseen.h"
#include "host/base/Utf8.h"

#include <algorithm>

namespace Corvid::XMLBuilder {

namespace {

constexpr std::size_t blanksOfLevel = 2;
/// Levels beyond are indented no further: sets may be hundreds deep, and the text would grow with
/// the square of that.
constexpr std::size_t mostIndented = 40;
/// How much is handed over at once.
constexpr std::size_t piece = std::size_t{64} * 1024;

constexpr bool isPlain(char c) { return c >= ' ' && c <= '~' && c != '"' && c != '\\' && c != '<'; }

} // namespace

void JsonWriter::put(std::string_view text) { buffer_ += text; }

void JsonWriter::flushIfFull() {
    if (buffer_.size() >= piece) {
        flush();
    }
}

void JsonWriter::flush() {
    sink_.write(reinterpret_cast<const unsigned char*>(buffer_.data()), buffer_.size());
    buffer_.clear();
}

void JsonWriter::separate(const Level& level) {
    if (!isIndented_) {
        return;
    }
    if (level.isShort) {
        put(level.isEmpty ? "" : " ");
    } else {
        put("\n");
        buffer_.append(blanksOfLevel * std::min(open_.size(), mostIndented), ' ');
    }
}

/// A value follows its key, or begins in its place.
void JsonWriter::beginValue() {
    if (!followsKey_ && !open_.empty()) {
        Level& level = open_.back();
        put(level.isEmpty ? "" : ",");
        separate(level);
        level.isEmpty = false;
    }
    followsKey_ = false;
}

void JsonWriter::begin(char front, char end, bool isShort) {
    beginValue();
    put({&front, 1});
    open_.push_back({end, isShort || (!open_.empty() && open_.back().isShort)});
}

void JsonWriter::end() {
    const Level level = open_.back();
    open_.pop_back();
    if (!level.isEmpty && !level.isShort) {
        separate(level);
    }
    put({&level.end, 1});
    if (open_.empty()) {
        put("\n");
    }
    flushIfFull();
}

void JsonWriter::key(std::string_view name) {
    beginValue();
    quote(name);
    put(isIndented_ ? ": " : ":");
    followsKey_ = true;
}

void JsonWriter::word(std::string_view text) {
    beginValue();
    put(text);
}

void JsonWriter::text(std::string_view text) {
    beginValue();
    quote(text);
    flushIfFull();
}

void JsonWriter::memberOrNull(std::string_view name, std::string_view text) {
    key(name);
    if (text.empty()) {
        null();
    } else {
        this->text(text);
    }
}

void JsonWriter::bytes(const unsigned char* bytes, std::size_t count) {
    beginValue();
    put("\"");
    while (count != 0) {
        const std::size_t some = std::min(count, piece / 2);
        const std::size_t old = buffer_.size();
        buffer_.resize(old + 2 * some);
        Hex::encode(bytes, some, buffer_.data() + old, Hex::upper);
        bytes += some;
        count -= some;
        flushIfFull();
    }
    put("\"");
}

void JsonWriter::identifier(const unsigned char* bytes, std::size_t count) {
    beginValue();
    const std::size_t old = buffer_.size();
    buffer_.append(3 * count + 1, '.');
    buffer_[old] = '"';
    for (std::size_t i = 0; i != count; ++i) {
        Hex::encode(bytes + i, 1, buffer_.data() + old + 1 + 3 * i, Hex::lower);
    }
    buffer_.back() = '"';
}

void JsonWriter::quote(std::string_view text) {
    put("\"");
    while (!text.empty()) {
        const auto* const plain = std::find_if_not(text.begin(), text.end(), isPlain);
        const auto run = static_cast<std::size_t>(plain - text.begin());
        put(text.substr(0, run));
        text.remove_prefix(run);
        if (text.empty()) {
            break;
        }
        const auto [point, length] = Platform::firstCharacter(text);
        if (length > 1 && !Platform::isControl(point) && !Platform::isUnseen(point)) {
            put(text.substr(0, length));
        } else {
            escape(point);
        }
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    put("\"");
}

void JsonWriter::escape(char32_t point) {
    if (point == '"' || point == '\\') {
        const char pair[] = {'\\', static_cast<char>(point)};
        return put({pair, sizeof pair});
    }
    if (point >= 0x10000) {
        escape(0xD800 | ((point - 0x10000) >> 10));
        point = 0xDC00 | (point & 0x3FF);
    }
    const unsigned char unit[] = {static_cast<unsigned char>(point >> 8),
                                  static_cast<unsigned char>(point)};
    put("\\u" + Hex::encoded<std::string>(unit, sizeof unit, Hex::lower));
}

} // namespace Corvid::XMLBuilder
