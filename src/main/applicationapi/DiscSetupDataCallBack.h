#pragma once

#include <juce_core/juce_core.h>

/** The disc player's setup data, through DiscApi. Called on the message thread; bound by raw
    pointer and never owned. */
class DiscSetupDataCallBack
{
public:
    virtual ~DiscSetupDataCallBack() = default;

    /** Code 1185 with a RemoteObjFormat number: the setting id (param1) and the number. */
    virtual void onSetupValue(int id, int value) = 0;
    /** Code 1185 with a RemoteObjFormat text: the setting id (param1) and the text. */
    virtual void onSetupText(int id, const juce::String& text) = 0;
    /** Code 1194 (param1). */
    virtual void onGeneralEvent(int param1) = 0;
    /** Code 1185 with RemoteObjFormat bytes: the setting id (param1) and the bytes (valid
        during the call). */
    virtual void onSetupData(int id, const juce::MemoryBlock& data) = 0;
};
