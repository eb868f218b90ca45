#pragma once

namespace LmComDetail
{

/** Ideographs from U+4E00 to U+9FA5. */
constexpr int kPinYinFirstLettersCount = 0x9FA5 - 0x4E00 + 1;

/** The upper-case pinyin initial of each ideograph, in code point order, and a final zero.
    Generated from the Unihan database by tools/pinyin/generate-pinyin-table.py. */
extern const char kPinYinFirstLetters[kPinYinFirstLettersCount + 1];

} // namespace LmComDetail
