#include "Utils/CMultiCharacter.h"

#include "Utils/detail/CMultiCharacterTable.h"

#include <string_view>

namespace
{
constexpr juce::juce_wchar kFirstIdeograph = 0x4E00;
// Only the first four letters of the table are used. Deliberate: applications sort with
// exactly these keys, so the length is not the table's.
constexpr int kPinYinLength = 4;

struct VariantRow
{
    char16_t key;
    const char16_t* variants;
};

// The blanks in the J, K, N and S rows are ordinary spaces and belong to the table: a space
// folds to J, the first of them. Deliberate; applications rely on it.
const VariantRow kLatinRows[] = {
    {u'A', u"AÀÁÂÃÄÅĀĂĄÆǞǠǢǺǼaàáâãäåāăąæǟǡǣǻǽ"},
    {u'B', u"Bb"},
    {u'C', u"CÇĆĈĊČcçćĉċč"},
    {u'D', u"DĎĐdďđ"},
    {u'E', u"EÈÉÊËĒĔĖĘĚeèéêëēĕėęě"},
    {u'F', u"Ff"},
    {u'G', u"GĞĜĞĠĢǤǦǴgğĝğġģǥǧǵ"},
    {u'H', u"HĤĦhĥħ"},
    {u'I', u"IÌÍÎÏĨĪĬĮİiìíîïĩīĭįı"},
    {u'J', u"JĴǰjĵ "},
    {u'K', u"KĶĸǨkķǩ "},
    {u'L', u"LĹĻĽĿŁlĺļľŀł"},
    {u'M', u"Mm"},
    {u'N', u"NÑŃŅŇŉŊǸnñńņň ŋǹ"},
    {u'O', u"OÒÓÔÕÖØŌŎŐŒǪǬǾoòóôõöøōŏőœǫǭǿ"},
    {u'P', u"Pp"},
    {u'Q', u"Qq"},
    {u'R', u"RŔŖŘrŕŗř"},
    {u'S', u"SßŞŚŜŞŠs şśŝşš"},
    {u'T', u"TŢŤŦtţťŧ"},
    {u'U', u"UÙÚÛÜŨŪŬŮŰŲuùúûüũūŭůűų"},
    {u'V', u"Vv"},
    {u'W', u"WŴwŵ"},
    {u'X', u"Xx"},
    {u'Y', u"YŸÝŶyÿýŷ"},
    {u'Z', u"ZŹŻŽzźżž"},
};

const VariantRow kGreekRows[] = {
    {u'Α', u"Αα"}, {u'Β', u"Ββ"}, {u'Γ', u"Γγ"}, {u'Δ', u"Δδ"}, {u'Ε', u"Εε"}, {u'Ζ', u"Ζζ"},
    {u'Η', u"Ηη"}, {u'Θ', u"Θθ"}, {u'Ι', u"Ιι"}, {u'Κ', u"Κκ"}, {u'Λ', u"Λλ"}, {u'Μ', u"Μμ"},
    {u'Ν', u"Νν"}, {u'Ξ', u"Ξξ"}, {u'Ο', u"Οο"}, {u'Π', u"Ππ"}, {u'Ρ', u"Ρρ"}, {u'Σ', u"Σσ"},
    {u'Τ', u"Ττ"}, {u'Υ', u"Υυ"}, {u'Φ', u"Φφ"}, {u'Χ', u"Χχ"}, {u'Ψ', u"Ψψ"}, {u'Ω', u"Ωω"},
};

// The Russian keyboard's letters in key order, then Ё and the Ukrainian Є and І.
const VariantRow kCyrillicRows[] = {
    {u'Й', u"Йй"}, {u'Ц', u"Цц"}, {u'У', u"Уу"}, {u'К', u"Кк"}, {u'Е', u"Ее"}, {u'Н', u"Нн"}, {u'Г', u"Гг"},
    {u'Ш', u"Шш"}, {u'Щ', u"Щщ"}, {u'З', u"Зз"}, {u'Х', u"Хх"}, {u'Ъ', u"Ъъ"}, {u'Ф', u"Фф"}, {u'Ы', u"Ыы"},
    {u'В', u"Вв"}, {u'А', u"Аа"}, {u'П', u"Пп"}, {u'Р', u"Рр"}, {u'О', u"Оо"}, {u'Л', u"Лл"}, {u'Д', u"Дд"},
    {u'Ж', u"Жж"}, {u'Э', u"Ээ"}, {u'Я', u"Яя"}, {u'Ч', u"Чч"}, {u'С', u"Сс"}, {u'М', u"Мм"}, {u'И', u"Ии"},
    {u'Т', u"Тт"}, {u'Ь', u"Ьь"}, {u'Б', u"Бб"}, {u'Ю', u"Юю"}, {u'Ё', u"Ёё"}, {u'Є', u"Єє"}, {u'І', u"Іі"},
};

template <size_t N>
void fill(std::map<char16_t, const char16_t*>& map, const VariantRow (&rows)[N])
{
    for (const auto& row : rows)
        map[row.key] = row.variants;
}

/** The variant string of the first row in key order that holds ch, or null. The string's
    terminating zero is no character of it, so ch 0 is held by none. */
const char16_t* rowOf(const std::map<char16_t, const char16_t*>& map, wchar_t ch)
{
    // Every variant is in the 16-bit range: a wider character must not be narrowed onto one.
    if (ch <= 0 || ch > 0xFFFF)
        return nullptr;
    for (const auto& row : map)
        if (std::u16string_view(row.second).find((char16_t)ch) != std::u16string_view::npos)
            return row.second;
    return nullptr;
}

juce::String stringOf(const char16_t* variants)
{
    juce::String text; // every variant is a single 16-bit unit, no surrogate pair
    for (; *variants != 0; ++variants)
        text += (juce::juce_wchar)*variants;
    return text;
}
} // namespace

CMultiCharacter& CMultiCharacter::GetInstance()
{
    static CMultiCharacter instance;
    return instance;
}

CMultiCharacter::CMultiCharacter() : m_pinYin{LmComDetail::kPinYinFirstLetters, kPinYinLength}
{
    fill(m_latin, kLatinRows);
    fill(m_greek, kGreekRows);
    fill(m_cyrillic, kCyrillicRows);
}

int CMultiCharacter::GetPinYin(const juce::String& in, juce::String& out) const
{
    if (in.isEmpty())
        return 0;
    juce::String result; // in and out may be the same String
    result.preallocateBytes(in.getNumBytesAsUTF8());
    for (auto p = in.getCharPointer(); !p.isEmpty(); ++p)
    {
        const juce::juce_wchar c = *p;
        const juce::int64 i = (juce::int64)c - kFirstIdeograph;
        if (c >= 0x20 && c <= 0x7E)
            result += c;
        else if (i >= 0 && i < m_pinYin.m_nLength)
            result += (juce::juce_wchar)m_pinYin.m_pTable[i];
        else
            result += c;
    }
    out = result;
    return 1;
}

int CMultiCharacter::MultiLanToABC(juce::String& text) const
{
    if (text.isEmpty())
        return 0;
    juce::String folded;
    folded.preallocateBytes(text.getNumBytesAsUTF8());
    for (auto p = text.getCharPointer(); !p.isEmpty(); ++p)
    {
        const wchar_t c = (wchar_t)*p;
        wchar_t out = c;
        if (_LATIN2ABC(c, out) == 0 && _GREEK2UpperLetter(c, out) == 0)
            _CYRILLIC2UpperLetter(c, out);
        folded += (juce::juce_wchar)out;
    }
    text = folded;
    return 1;
}

int CMultiCharacter::GetLowLetter(wchar_t ch, wchar_t& out) const
{
    const char16_t* row = findRow(ch);
    if (row == nullptr)
        return 0;
    // A Latin row starts with an ASCII capital; a Greek or Cyrillic row is capital, small.
    // (The C library's case mapping depends on the locale, so it is not used.)
    out = (wchar_t)(row[0] < 0x80 ? (row[0] | 0x20) : row[1]);
    return 1;
}

int CMultiCharacter::GetExtendCharacter(wchar_t ch, juce::String& out) const
{
    const char16_t* row = findRow(ch);
    if (row == nullptr)
        return 0;
    out = stringOf(row);
    return 1;
}

int CMultiCharacter::_LATIN2ABC(wchar_t ch, wchar_t& out) const
{
    // The apostrophe comes before the table, deliberately: a folded text keeps it as a quote.
    if (ch == 0x27)
    {
        out = 0x22;
        return 1;
    }
    const char16_t* row = rowOf(m_latin, ch);
    if (row == nullptr)
        return 0;
    out = (wchar_t)row[0];
    return 1;
}

int CMultiCharacter::_GREEK2UpperLetter(wchar_t ch, wchar_t& out) const
{
    const char16_t* row = rowOf(m_greek, ch);
    if (row == nullptr)
        return 0;
    out = (wchar_t)row[0];
    return 1;
}

int CMultiCharacter::_CYRILLIC2UpperLetter(wchar_t ch, wchar_t& out) const
{
    const char16_t* row = rowOf(m_cyrillic, ch);
    if (row == nullptr)
        return 0;
    out = (wchar_t)row[0];
    return 1;
}

const char16_t* CMultiCharacter::findRow(wchar_t ch) const
{
    if (const char16_t* row = rowOf(m_latin, ch))
        return row;
    if (const char16_t* row = rowOf(m_greek, ch))
        return row;
    return rowOf(m_cyrillic, ch);
}
