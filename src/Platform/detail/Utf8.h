#pragma once

#include <juce_core/juce_core.h>

#include <cstring>
#include <string>

// The one way text from outside (the environment, arguments, files, directory entries, the ring)
// becomes a juce::String. JUCE's own UTF-8 constructors trust their input: an overlong NUL
// (C0 80) makes them write past their buffer, and a stray byte makes later operations misbehave.
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

/** The same, for a zero-terminated text (null gives ""). */
inline juce::String decodeUtf8(const char* text)
{
    return text != nullptr ? decodeUtf8(reinterpret_cast<const unsigned char*>(text), std::strlen(text))
                           : juce::String();
}

/** The same, for the bytes of a std::string (up to its first zero byte). */
inline juce::String decodeUtf8(const std::string& text)
{
    return decodeUtf8(reinterpret_cast<const unsigned char*>(text.data()), text.size());
}

/** A juce::String whose bytes may have been made by an unchecked constructor, re-read through
    the decoder; valid text comes back as it was. */
inline juce::String checkedText(const juce::String& text)
{
    return decodeUtf8(text.toRawUTF8());
}

/** Whether n bytes are well-formed UTF-8 without a zero byte (what decodeUtf8 keeps as it is). */
inline bool isValidUtf8(const unsigned char* p, size_t n)
{
    if (std::memchr(p, 0, n) != nullptr)
        return false;
    const auto decoded = decodeUtf8(p, n);
    return decoded.getNumBytesAsUTF8() == n && std::memcmp(decoded.toRawUTF8(), p, n) == 0;
}

} // namespace LmComDetail
