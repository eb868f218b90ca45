#pragma once

#include "Message/AppMessage.h"

/** What the setup application hears from the main service, through SetupApi. Called on the
    message thread; bound by raw pointer and never owned. */
class SetupCallBack
{
public:
    virtual ~SetupCallBack() = default;

    /** Code 1195 (param1, param2). */
    virtual void onGeneralNotify(int param1, int param2) = 0;
    /** Code 1190 with arg1 2, for a setting that holds text: its id (arg2) and the text. */
    virtual void onSettingString(int id, const juce::String& value) = 0;
    /** Code 1190 with arg1 2, for a numeric setting: its id (arg2) and the number. */
    virtual void onSettingInt(int id, int value) = 0;
    /** Code 1322 (param1, param2). */
    virtual void onGeneralCommand(int param1, int param2) = 0;
    /** Every code 1190, as it came (after onSettingString or onSettingInt, where one ran). */
    virtual void onSetupMessage(const AppMessage::Ptr& message) = 0;
};
