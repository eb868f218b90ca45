#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace LmComTool
{

/** Writes compact JSON straight into a string, in the order it is given, for output that
    must keep up with a busy bus (no document is built).

    Strings are escaped as JSON requires: quotes, backslashes and control characters, and any
    byte sequence that is not valid UTF-8 becomes U+FFFD, so the output is valid JSON whatever
    the text holds. A double that is not finite is written as the text "NaN", "Infinity" or
    "-Infinity" (JSON has no number for them).
*/
class JsonWriter
{
public:
    explicit JsonWriter(std::string& out) : m_out(out) {}

    JsonWriter& beginObject();
    JsonWriter& endObject();
    JsonWriter& beginArray();
    JsonWriter& endArray();
    /** The key of the next value in an object. */
    JsonWriter& key(std::string_view name);

    JsonWriter& value(std::string_view text);
    JsonWriter& value(const char* text) { return value(std::string_view(text)); }
    JsonWriter& value(long long number);
    JsonWriter& value(int number) { return value((long long)number); }
    JsonWriter& value(unsigned int number) { return value((long long)number); }
    JsonWriter& value(bool flag);
    JsonWriter& value(double number);
    JsonWriter& null();
    /** Bytes as a string of upper-case hex digits. */
    JsonWriter& hex(const unsigned char* data, size_t size);

    /** Appends text as the inside of a JSON string. */
    static void escape(std::string& out, std::string_view text);

private:
    void beforeValue();

    std::string& m_out;
    /** Per open object or array: whether an element was written yet. */
    std::vector<bool> m_hasElement;
    bool m_afterKey = false;
};

} // namespace LmComTool
