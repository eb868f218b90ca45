// Any bytes as outside text: the checked decoder, command lines and the character helper.
#include <LmCom.h>

#include "Platform/detail/Utf8.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    const auto text = LmComDetail::decodeUtf8(data, size);
    const auto utf8 = text.toStdString();
    if (!LmComDetail::isValidUtf8((const unsigned char*)utf8.data(), utf8.size())
        || LmComDetail::decodeUtf8(utf8) != text)
        __builtin_trap();

    // A command line as a process receives it, through JUCE's unchecked constructor.
    const std::string bytes((const char*)data, size);
    CmdLineHelper::parseCommandLine(juce::String(juce::CharPointer_UTF8(bytes.c_str())));

    auto& helper = CMultiCharacter::GetInstance();
    juce::String out, folded = text;
    helper.GetPinYin(text, out);
    helper.MultiLanToABC(folded);
    if (size >= 4)
    {
        const wchar_t c = (wchar_t)(data[0] | data[1] << 8 | data[2] << 16 | (unsigned)data[3] << 24);
        wchar_t low = 0;
        helper.GetLowLetter(c, low);
        helper.GetExtendCharacter(c, out);
    }
    return 0;
}
