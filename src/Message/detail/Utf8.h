#pragma once

#include <juce_core/juce_core.h>

namespace LmComDetail
{

/** Decodes untrusted UTF-8 bytes, stopping at the first zero byte or after n bytes. Malformed
    sequences (truncated, overlong, surrogates, beyond U+10FFFF) become U+FFFD, so no byte
    outside [p, p + n) is ever read. */
inline juce::String decodeUtf8(const unsigned char* p, size_t n)
{
    juce::Array<juce::juce_wchar> chars;
    chars.ensureStorageAllocated((int)juce::jmin(n, (size_t)4096));
    size_t i = 0;
    while (i < n && p[i] != 0)
    {
        const unsigned char lead = p[i];
        if (lead < 0x80)
        {
            chars.add(lead);
            ++i;
            continue;
        }
        int extra = 0;
        juce::uint32 cp = 0, minimum = 0;
        if ((lead & 0xE0) == 0xC0)
        {
            extra = 1;
            cp = lead & 0x1F;
            minimum = 0x80;
        }
        else if ((lead & 0xF0) == 0xE0)
        {
            extra = 2;
            cp = lead & 0x0F;
            minimum = 0x800;
        }
        else if ((lead & 0xF8) == 0xF0)
        {
            extra = 3;
            cp = lead & 0x07;
            minimum = 0x10000;
        }
        else
        {
            chars.add(0xFFFD);
            ++i;
            continue;
        }

        size_t j = 1;
        for (; j <= (size_t)extra; ++j)
        {
            if (i + j >= n || (p[i + j] & 0xC0) != 0x80)
                break;
            cp = (cp << 6) | (p[i + j] & 0x3F);
        }
        if (j <= (size_t)extra || cp < minimum || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
        {
            chars.add(0xFFFD);
            i += j; // skip the lead and the continuation bytes that were seen
            continue;
        }
        chars.add((juce::juce_wchar)cp);
        i += j;
    }
    chars.add(0);
    return juce::String(
        juce::CharPointer_UTF32(reinterpret_cast<const juce::CharPointer_UTF32::CharType*>(chars.getRawDataPointer())));
}

} // namespace LmComDetail
