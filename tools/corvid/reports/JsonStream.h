#pragma once

#include "host/dataio/DataSink.h"

#include <nlohmann/json_fwd.hpp>
#include <string_view>
#include <vector>

namespace Corvid::Tool {

/// Writes JSON piece by piece, so that no more of it is in memory than one piece: two blanks for
/// each level, as the pieces themselves have.
class JsonStream {
public:
    /// @param sink  is borrowed.
    explicit JsonStream(DataIO::DataSink& sink) : sink_(sink) {}

    void beginObject() { begin('{', '}'); }
    void beginArray() { begin('[', ']'); }
    /// Ends the object or array that was begun last.
    void end();

    /// Begins a member of an object; its value follows.
    void key(std::string_view name);
    /// Writes a whole value. Text that is not UTF-8 gets U+FFFD where it is wrong.
    void value(const nlohmann::ordered_json& whole);
    void member(std::string_view name, const nlohmann::ordered_json& whole);

private:
    struct Level {
        char end;
        bool isEmpty;
    };

    void begin(char front, char end);
    void beginValue();
    void newLine();
    void write(std::string_view text);

    DataIO::DataSink& sink_;
    std::vector<Level> open_;
    bool followsKey_ = false;
};

} // namespace Corvid::Tool
