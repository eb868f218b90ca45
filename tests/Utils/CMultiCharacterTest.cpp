#include "support/TestSupport.h"

#include <LmCom.h>
#include <Utils/detail/CMultiCharacterTable.h>

#include <set>

namespace
{
juce::String utf8(const char* text)
{
    return juce::String::fromUTF8(text);
}

juce::String folded(const juce::String& text)
{
    juce::String result = text;
    EXPECT_EQ(CMultiCharacter::GetInstance().MultiLanToABC(result), 1);
    return result;
}
} // namespace

TEST(CMultiCharacterTest, PinYinUsesOnlyTheFirstFourLetters)
{
    auto& helper = CMultiCharacter::GetInstance();
    juce::String out = "untouched";
    EXPECT_EQ(helper.GetPinYin("", out), 0);
    EXPECT_EQ(out, "untouched");

    EXPECT_EQ(helper.GetPinYin("a 1", out), 1);
    EXPECT_EQ(out, "a 1");
    // 一丁丂七 are converted; 中 (U+4E2D) is past the four and stays, like é and U+1F600.
    const auto mixed = utf8("\xE4\xB8\x80\xE4\xB8\x81\xE4\xB8\x82\xE4\xB8\x83\xE4\xB8\xAD\xC3\xA9\xF0\x9F\x98\x80~");
    EXPECT_EQ(helper.GetPinYin(mixed, out), 1);
    EXPECT_EQ(out, utf8("YDKQ\xE4\xB8\xAD\xC3\xA9\xF0\x9F\x98\x80~"));

    // The output may be the input.
    juce::String same = utf8("\xE4\xB8\x80x");
    EXPECT_EQ(helper.GetPinYin(same, same), 1);
    EXPECT_EQ(same, "Yx");
}

TEST(CMultiCharacterTest, GeneratedTableHoldsOneInitialPerIdeograph)
{
    const char* table = LmComDetail::kPinYinFirstLetters;
    ASSERT_EQ(std::strlen(table), 20902u);
    for (int i = 0; i < LmComDetail::kPinYinFirstLettersCount; ++i)
        ASSERT_TRUE(table[i] >= 'A' && table[i] <= 'Z') << i;
    // 中 zhōng, 人 rén, 爱 ài, 龥 yù (the last), 兙 (no Mandarin reading: the fallback).
    EXPECT_EQ(table[0x4E2D - 0x4E00], 'Z');
    EXPECT_EQ(table[0x4EBA - 0x4E00], 'R');
    EXPECT_EQ(table[0x7231 - 0x4E00], 'A');
    EXPECT_EQ(table[0x9FA5 - 0x4E00], 'Y');
    EXPECT_EQ(table[0x5159 - 0x4E00], 'Z');
}

TEST(CMultiCharacterTest, FoldsLatinGreekAndCyrillicToCapitals)
{
    auto& helper = CMultiCharacter::GetInstance();
    juce::String empty;
    EXPECT_EQ(helper.MultiLanToABC(empty), 0);

    // é ß ı ω й Ё Ǽ ŋ
    EXPECT_EQ(folded(utf8("\xC3\xA9\xC3\x9F\xC4\xB1\xCF\x89\xD0\xB9\xD0\x81\xC7\xBC\xC5\x8B")),
              utf8("ESI\xCE\xA9\xD0\x99\xD0\x81"
                   "AN"));
    // Spaces become J and the apostrophe a double quote, on purpose; digits and punctuation stay.
    EXPECT_EQ(folded("l'eau 42, ok!"), "L\"EAUJ42,JOK!");
    // Other scripts, the ideographs and characters beyond 16 bits are kept; U+10041 must not be
    // taken for A.
    EXPECT_EQ(folded(utf8("\xE4\xB8\xAD\xD7\x90\xF0\x90\x81\x81")), utf8("\xE4\xB8\xAD\xD7\x90\xF0\x90\x81\x81"));
    // Final sigma has no row of its own.
    EXPECT_EQ(folded(utf8("\xCF\x83\xCF\x82")), utf8("\xCE\xA3\xCF\x82"));
}

TEST(CMultiCharacterTest, LowLettersAndExtendedCharacters)
{
    auto& helper = CMultiCharacter::GetInstance();
    wchar_t low = L'?';
    EXPECT_EQ(helper.GetLowLetter(0x00C9, low), 1); // É
    EXPECT_EQ(low, L'e');
    EXPECT_EQ(helper.GetLowLetter(0x03A9, low), 1); // Ω
    EXPECT_EQ(low, (wchar_t)0x03C9);
    EXPECT_EQ(helper.GetLowLetter(0x0439, low), 1); // й
    EXPECT_EQ(low, (wchar_t)0x0439);
    EXPECT_EQ(helper.GetLowLetter(L' ', low), 1);
    EXPECT_EQ(low, L'j');
    low = L'?';
    EXPECT_EQ(helper.GetLowLetter(L'7', low), 0);
    EXPECT_EQ(helper.GetLowLetter(0, low), 0);
    EXPECT_EQ(helper.GetLowLetter(0x10061, low), 0);
    EXPECT_EQ(low, L'?');

    juce::String variants = "untouched";
    EXPECT_EQ(helper.GetExtendCharacter(0x0117, variants), 1); // ė
    EXPECT_EQ(variants, utf8("E\xC3\x88\xC3\x89\xC3\x8A\xC3\x8B\xC4\x92\xC4\x94\xC4\x96\xC4\x98\xC4\x9A"
                             "e\xC3\xA8\xC3\xA9\xC3\xAA\xC3\xAB\xC4\x93\xC4\x95\xC4\x97\xC4\x99\xC4\x9B"));
    EXPECT_EQ(helper.GetExtendCharacter(0x0416, variants), 1); // Ж
    EXPECT_EQ(variants, utf8("\xD0\x96\xD0\xB6"));
    EXPECT_EQ(helper.GetExtendCharacter(L'#', variants), 0);
    EXPECT_EQ(variants, utf8("\xD0\x96\xD0\xB6"));
}

// Property over every character below U+3000 (the rows live far below): a character in a fold
// row folds to the row's key, which folds to itself; any other character is kept (the
// apostrophe excepted). Characters in two rows (the blank) belong to the first.
TEST(CMultiCharacterTest, EveryCharacterOfAFoldRowFoldsToTheRowsKey)
{
    auto& helper = CMultiCharacter::GetInstance();
    std::set<juce::juce_wchar> keys;
    for (juce::juce_wchar c = 1; c < 0x3000; ++c)
    {
        const auto text = juce::String::charToString(c);
        juce::String row;
        if (helper.GetExtendCharacter((wchar_t)c, row) == 0)
        {
            if (c != '\'')
            {
                ASSERT_EQ(folded(text), text) << std::hex << c;
            }
            continue;
        }
        const auto key = juce::String::charToString(row[0]);
        ASSERT_TRUE(row.containsChar(c)) << std::hex << c;
        ASSERT_EQ(folded(text), key) << std::hex << c;
        ASSERT_EQ(folded(key), key) << std::hex << c;
        keys.insert(row[0]);
    }
    EXPECT_EQ(keys.size(), 26u + 24u + 35u); // Latin, Greek, Cyrillic
}
