#pragma once

#include "Message/AppMessage.h"

/** What the radio application hears from the main service, through RadioApi. Called on the
    message thread; bound by raw pointer and never owned. */
class RadioCallBack
{
public:
    virtual ~RadioCallBack() = default;

    /** The own codes 74, 1175, 1323, 1328 and 1636: the message as it came, its code. */
    virtual void onRadioMessage(const AppMessage::Ptr& message, int code) = 0;
    /** Code 1195 (param1, param2). */
    virtual void onGeneralNotify(int param1, int param2) = 0;
    /** Code 1203; RadioApi answers power-off ready (1204) right after. */
    virtual void onPowerOff(int param1) = 0;
    /** Code 1322 (param1, param2). */
    virtual void onGeneralCommand(int param1, int param2) = 0;
    /** Code 1199; RadioApi then asks the JUCE application to quit. */
    virtual void onQuit(const AppMessage::Ptr& message) = 0;
};
