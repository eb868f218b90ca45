#include "Hex.h"

#include <juce_core/juce_core.h>

namespace LmComTool
{

namespace
{
int digitValue(char c)
{
    return juce::CharacterFunctions::getHexDigitValue((juce::juce_wchar)(unsigned char)c);
}
} // namespace

bool Hex::parse(const std::string& text, std::vector<unsigned char>& out)
{
    size_t i = 0;
    if (text.size() >= 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X'))
        i = 2;
    std::vector<unsigned char> bytes;
    int high = -1;
    for (; i < text.size(); ++i)
    {
        const char c = text[i];
        if (c == ' ' || c == '\t' || c == '\n' || c == ':' || c == '-')
        {
            if (high >= 0)
                return false; // a separator inside a pair
            continue;
        }
        const int value = digitValue(c);
        if (value < 0)
            return false;
        if (high < 0)
            high = value;
        else
        {
            bytes.push_back((unsigned char)(high * 16 + value));
            high = -1;
        }
    }
    if (high >= 0)
        return false;
    out = std::move(bytes);
    return true;
}

std::string Hex::format(const unsigned char* data, size_t size, bool spaced, size_t limit)
{
    static const char kDigits[] = "0123456789ABCDEF";
    const size_t shown = size < limit ? size : limit;
    std::string text(shown == 0 ? 0 : (spaced ? shown * 3 - 1 : shown * 2), ' ');
    char* p = text.data();
    for (size_t i = 0; i < shown; ++i)
    {
        if (spaced && i > 0)
            ++p; // the blank is there already
        *p++ = kDigits[data[i] >> 4];
        *p++ = kDigits[data[i] & 15];
    }
    if (shown < size)
        text += " ...";
    return text;
}

} // namespace LmComTool
