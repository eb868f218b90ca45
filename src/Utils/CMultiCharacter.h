#pragma once

#include <juce_core/juce_core.h>

#include <map>

/** Turns text in several scripts into plain capital letters: CJK ideographs into the Latin
    first letter of their reading (pinyin initial), accented Latin letters into their upper-case
    base letter, Greek and Cyrillic letters into their capitals.

    One instance per process (GetInstance), made on first use and never destroyed. It only reads
    its tables after construction, so any thread may use it.

    Two results that look wrong are deliberate and kept, because applications sort and match
    with them: only the first four ideographs (U+4E00 to U+4E03) get a letter, and a space folds
    to J (the J row of the Latin table holds a space, and it is the first row that does).
*/
class CMultiCharacter
{
public:
    static CMultiCharacter& GetInstance();

    CMultiCharacter(const CMultiCharacter&) = default;
    CMultiCharacter& operator=(const CMultiCharacter&) = default;

    /** Replaces out by one character per character of in: printable ASCII as it is, an
        ideograph of the first-letter table by its letter, anything else as it is. Returns 0,
        out untouched, for an empty input, else 1. */
    int GetPinYin(const juce::String& in, juce::String& out) const;

    /** Folds every character of text to its upper-case base letter (Latin, then Greek, then
        Cyrillic; an apostrophe becomes a double quote); others are kept. Returns 0 for an empty
        text, else 1. */
    int MultiLanToABC(juce::String& text) const;

    /** The lower-case base letter of ch's row (the first row of the Latin, Greek or Cyrillic
        table that holds ch): é gives e, Ω gives ω. Returns 1 and sets out, or 0 with out
        untouched when no row holds ch. Like MultiLanToABC, a space gives j. */
    int GetLowLetter(wchar_t ch, wchar_t& out) const;

    /** Every form of ch's letter: the whole variant string of its row (e gives
        "EÈÉÊËĒĔĖĘĚeèéêëēĕėęě"), for matching any of them. Returns 1 and sets out, or 0 with out
        untouched when no row holds ch. */
    int GetExtendCharacter(wchar_t ch, juce::String& out) const;

private:
    CMultiCharacter();

    using VariantMap = std::map<char16_t, const char16_t*>;

    /** The first-letter table and the number of its letters in use. */
    struct PinYinTable
    {
        const char* m_pTable;
        int m_nLength;
    };

    int _LATIN2ABC(wchar_t ch, wchar_t& out) const;
    int _GREEK2UpperLetter(wchar_t ch, wchar_t& out) const;
    int _CYRILLIC2UpperLetter(wchar_t ch, wchar_t& out) const;
    /** The variant string of the first row, in key order, that holds ch; null when none. */
    const char16_t* findRow(wchar_t ch) const;

    VariantMap m_latin;
    VariantMap m_greek;
    VariantMap m_cyrillic;
    PinYinTable m_pinYin;
};
