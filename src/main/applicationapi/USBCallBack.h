#pragma once

#include "Message/AppMessage.h"

/** What the USB player hears from the main service, through USBApi. Called on the message
    thread; bound by raw pointer and never owned. */
class USBCallBack
{
public:
    virtual ~USBCallBack() = default;

    /** The own codes 1178, 1634, 1636 and 1639: the message as it came, its code. */
    virtual void onUSBMessage(const AppMessage::Ptr& message, int code) = 0;
    /** Code 1195 (param1, param2). */
    virtual void onGeneralNotify(int param1, int param2) = 0;
    /** Code 1203; USBApi answers power-off ready (1204) right after. */
    virtual void onPowerOff(int param1) = 0;
    /** Code 1322 (param1, param2). */
    virtual void onGeneralCommand(int param1, int param2) = 0;
    /** Code 1199; USBApi then asks the JUCE application to quit. */
    virtual void onQuit(const AppMessage::Ptr& message) = 0;
};
