#include "JsonWriter.h"

#include <charconv>
#include <cmath>

namespace LmComTool
{

namespace
{
// The length of the valid UTF-8 sequence at p (1 to 4), or 0 when it is not one.
size_t utf8Length(const unsigned char* p, size_t left)
{
    const unsigned char lead = p[0];
    size_t length;
    unsigned int codePoint, minimum;
    if (lead >= 0xC2 && lead <= 0xDF)
        length = 2, codePoint = lead & 0x1F, minimum = 0x80;
    else if (lead >= 0xE0 && lead <= 0xEF)
        length = 3, codePoint = lead & 0x0F, minimum = 0x800;
    else if (lead >= 0xF0 && lead <= 0xF4)
        length = 4, codePoint = lead & 0x07, minimum = 0x10000;
    else
        return 0;
    if (left < length)
        return 0;
    for (size_t i = 1; i < length; ++i)
    {
        if ((p[i] & 0xC0) != 0x80)
            return 0;
        codePoint = (codePoint << 6) | (p[i] & 0x3F);
    }
    if (codePoint < minimum || codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint <= 0xDFFF))
        return 0;
    return length;
}
} // namespace

void JsonWriter::escape(std::string& out, std::string_view text)
{
    static const char kDigits[] = "0123456789abcdef";
    const auto* p = reinterpret_cast<const unsigned char*>(text.data());
    const size_t size = text.size();
    size_t i = 0;
    while (i < size)
    {
        // Plain printable ASCII goes in runs.
        size_t run = i;
        while (run < size && p[run] >= 0x20 && p[run] < 0x80 && p[run] != '"' && p[run] != '\\')
            ++run;
        out.append(text.data() + i, run - i);
        i = run;
        if (i == size)
            break;
        const unsigned char c = p[i];
        if (c >= 0x80)
        {
            const size_t length = utf8Length(p + i, size - i);
            if (length == 0)
            {
                out += "\\ufffd";
                ++i;
            }
            else
            {
                out.append(text.data() + i, length);
                i += length;
            }
            continue;
        }
        switch (c)
        {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '\b':
            out += "\\b";
            break;
        case '\f':
            out += "\\f";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            out += "\\u00";
            out += kDigits[c >> 4];
            out += kDigits[c & 15];
        }
        ++i;
    }
}

void JsonWriter::beforeValue()
{
    if (m_afterKey)
    {
        m_afterKey = false;
        return;
    }
    if (!m_hasElement.empty())
    {
        if (m_hasElement.back())
            m_out += ',';
        m_hasElement.back() = true;
    }
}

JsonWriter& JsonWriter::beginObject()
{
    beforeValue();
    m_out += '{';
    m_hasElement.push_back(false);
    return *this;
}

JsonWriter& JsonWriter::endObject()
{
    m_out += '}';
    if (!m_hasElement.empty())
        m_hasElement.pop_back();
    return *this;
}

JsonWriter& JsonWriter::beginArray()
{
    beforeValue();
    m_out += '[';
    m_hasElement.push_back(false);
    return *this;
}

JsonWriter& JsonWriter::endArray()
{
    m_out += ']';
    if (!m_hasElement.empty())
        m_hasElement.pop_back();
    return *this;
}

JsonWriter& JsonWriter::key(std::string_view name)
{
    beforeValue();
    m_out += '"';
    escape(m_out, name);
    m_out += "\":";
    m_afterKey = true;
    return *this;
}

JsonWriter& JsonWriter::value(std::string_view text)
{
    beforeValue();
    m_out += '"';
    escape(m_out, text);
    m_out += '"';
    return *this;
}

JsonWriter& JsonWriter::value(long long number)
{
    beforeValue();
    char buffer[24];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, number);
    m_out.append(buffer, result.ptr);
    return *this;
}

JsonWriter& JsonWriter::value(bool flag)
{
    beforeValue();
    m_out += flag ? "true" : "false";
    return *this;
}

JsonWriter& JsonWriter::value(double number)
{
    if (!std::isfinite(number))
        return value(std::isnan(number) ? "NaN" : (number > 0 ? "Infinity" : "-Infinity"));
    beforeValue();
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, number);
    m_out.append(buffer, result.ptr);
    return *this;
}

JsonWriter& JsonWriter::null()
{
    beforeValue();
    m_out += "null";
    return *this;
}

JsonWriter& JsonWriter::hex(const unsigned char* data, size_t size)
{
    static const char kDigits[] = "0123456789ABCDEF";
    beforeValue();
    const size_t start = m_out.size();
    m_out.resize(start + 2 + 2 * size);
    char* p = &m_out[start];
    *p++ = '"';
    for (size_t i = 0; i < size; ++i)
    {
        *p++ = kDigits[data[i] >> 4];
        *p++ = kDigits[data[i] & 15];
    }
    *p = '"';
    return *this;
}

} // namespace LmComTool
