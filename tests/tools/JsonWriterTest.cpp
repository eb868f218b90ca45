// The tool's JSON output must stay valid JSON whatever the bus carries.
#include "JsonWriter.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <random>

using LmComTool::JsonWriter;

TEST(JsonWriterTest, EscapesEveryStringIntoValidJson)
{
    std::string out;
    JsonWriter json(out);
    json.beginObject()
        .key("q\"k")
        .value("a\"b\\c\n\t\r\b\f\x01\x1F\x7F")
        .key("utf8")
        .value("Radio \xE4\xB8\xAD \xF0\x9F\x93\xBB")
        .key("bad")
        .value(std::string_view("\xC3\x28 \xED\xA0\x80 \xF4\x90\x80\x80 \xC0\xAF \xE2\x82", 17))
        .key("numbers")
        .beginArray()
        .value(-2147483647 - 1)
        .value(4294967295u)
        .value(-2.5)
        .value(0.1)
        .value(std::nan(""))
        .value(-INFINITY)
        .endArray()
        .key("empty")
        .beginObject()
        .endObject()
        .key("bytes")
        .hex(reinterpret_cast<const unsigned char*>("\x00\xAB\xFF"), 3)
        .key("none")
        .null()
        .endObject();
    EXPECT_EQ(out, R"({"q\"k":"a\"b\\c\n\t\r\b\f\u0001\u001f)"
                   "\x7F"
                   R"(","utf8":"Radio )"
                   "\xE4\xB8\xAD \xF0\x9F\x93\xBB"
                   R"(","bad":"\ufffd( \ufffd\ufffd\ufffd \ufffd\ufffd\ufffd\ufffd \ufffd\ufffd \ufffd\ufffd",)"
                   R"("numbers":[-2147483648,4294967295,-2.5,0.1,"NaN","-Infinity"],"empty":{},"bytes":"00ABFF",)"
                   R"("none":null})");
    const auto parsed = nlohmann::json::parse(out);
    EXPECT_EQ(parsed["q\"k"], "a\"b\\c\n\t\r\b\f\x01\x1F\x7F");
    EXPECT_EQ(parsed["numbers"][3], 0.1);

    // Random bytes as keys and values: always parsed back by an independent parser.
    std::mt19937 random(7);
    for (int round = 0; round < 2000; ++round)
    {
        std::string text(random() % 24, '\0');
        for (auto& c : text)
            c = (char)(random() & 0xFF);
        std::string line;
        JsonWriter writer(line);
        writer.beginObject().key(text).value(text).endObject();
        EXPECT_TRUE(nlohmann::json::accept(line)) << line;
    }
}
