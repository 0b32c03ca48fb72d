#include "tools/corvid/reports/JsonStream.h"

#include "host/dataio/Memory.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace Corvid;
using Json = nlohmann::ordered_json;

namespace {

/// Writes a value piece by piece.
void write(Tool::JsonStream& stream, const Json& json) {
    if (json.is_object()) {
        stream.beginObject();
        for (const auto& [name, value] : json.items()) {
            stream.key(name);
            write(stream, value);
        }
        stream.end();
    } else if (json.is_array()) {
        stream.beginArray();
        for (const auto& value : json) {
            write(stream, value);
        }
        stream.end();
    } else {
        stream.value(json);
    }
}

template <class Write> std::string textOf(Write write) {
    DataIO::Memory::MemoryDataSink sink;
    Tool::JsonStream stream(sink);
    write(stream);
    return {reinterpret_cast<const char*>(sink.rawBuffer()), sink.serializedSize()};
}

struct Case {
    const char* name;
    const char* json;
};

class JsonStreams : public ::testing::TestWithParam<Case> {};

TEST_P(JsonStreams, hasTheLayoutOfAWholeValue) {
    const Json json = Json::parse(GetParam().json);
    const std::string whole = json.dump(2) + "\n";
    EXPECT_EQ(textOf([&](auto& stream) { write(stream, json); }), whole);
    EXPECT_EQ(textOf([&](auto& stream) {
                  stream.beginObject();
                  stream.member("a", json);
                  stream.key("b");
                  stream.beginArray();
                  stream.value(json);
                  stream.value(json);
                  stream.end();
                  stream.end();
              }),
              (Json{{"a", json}, {"b", {json, json}}}.dump(2) + "\n"));
}

INSTANTIATE_TEST_SUITE_P(
    , JsonStreams,
    ::testing::Values(Case{"EmptyObject", "{}"}, Case{"EmptyArray", "[]"},
                      Case{"Nested", R"({"a": [{"b": []}, {}, [[], [1, 2]]], "c": {"d": null}})"},
                      Case{"Texts", R"({"a\n\"b": "line\nline \u0001 \u00e4"})"}),
    [](const auto& each) { return each.param.name; });

TEST(JsonStream, replacesWhatIsNotUtf8) {
    EXPECT_EQ(textOf([](auto& stream) {
                  stream.beginArray();
                  stream.value("a\xFF");
                  stream.end();
              }),
              "[\n  \"a\xEF\xBF\xBD\"\n]\n");
}

} // namespace
