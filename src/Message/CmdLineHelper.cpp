#include "Message/CmdLineHelper.h"

#include "Message/MsgSession.h"
#include "Platform/detail/Utf8.h"

#include <climits>

namespace
{
bool isOption(const juce::String& token)
{
    return token.length() >= 2 && token[0] == '-' && !juce::CharacterFunctions::isDigit(token[1]);
}

// A decimal integer, saturated to the int range (command lines are untrusted text).
int toInt(const juce::String& text)
{
    auto p = text.getCharPointer();
    bool negative = false;
    if (*p == '-' || *p == '+')
        negative = p.getAndAdvance() == '-';
    juce::int64 value = 0;
    while (juce::CharacterFunctions::isDigit(*p) && value <= INT_MAX)
        value = value * 10 + (p.getAndAdvance() - '0');
    value = negative ? -value : value;
    return (int)juce::jlimit((juce::int64)INT_MIN, (juce::int64)INT_MAX, value);
}
} // namespace

juce::String CmdLineHelper::genCommandLine(const juce::ReferenceCountedObjectPtr<Bundle>& bundle)
{
    int length = 0;
    const int slot = MsgSession::putParcelable(Parcelable::Ptr(bundle.get()), length);
    return "-d " + juce::String(slot) + " -l " + juce::String(length);
}

juce::ReferenceCountedObjectPtr<Bundle> CmdLineHelper::parseCommandLine(const juce::String& commandLine)
{
    // The text may come from a process's command line, made by an unchecked constructor.
    juce::StringArray tokens;
    tokens.addTokens(LmComDetail::checkedText(commandLine), " \t\r\n", "");
    tokens.removeEmptyStrings();

    int slot = -1;
    int length = 0;
    for (int i = 0; i < tokens.size(); ++i)
    {
        if (!isOption(tokens[i]))
            continue;
        const bool hasValue = i + 1 < tokens.size() && !isOption(tokens[i + 1]);
        const int value = hasValue ? toInt(tokens[i + 1]) : 0;
        if (tokens[i] == "-d")
            slot = value;
        else if (tokens[i] == "-l")
            length = value;
        if (hasValue)
            ++i;
    }
    auto object = MsgSession::getParcelable(slot, length);
    return juce::ReferenceCountedObjectPtr<Bundle>(dynamic_cast<Bundle*>(object.get()));
}
