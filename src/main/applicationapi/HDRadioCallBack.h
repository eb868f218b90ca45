#pragma once

#include "Message/AppMessage.h"

/** What the HD Radio application hears from the main service, through HDRadioApi. Called on the
    message thread; bound by raw pointer and never owned. */
class HDRadioCallBack
{
public:
    virtual ~HDRadioCallBack() = default;

    /** Code 1195 (param1, param2). */
    virtual void onGeneralNotify(int param1, int param2) = 0;
    /** Code 1203; HDRadioApi answers power-off ready (1204) right after. */
    virtual void onPowerOff(int param1) = 0;
    /** Code 1199; HDRadioApi then asks the JUCE application to quit. */
    virtual void onQuit(const AppMessage::Ptr& message) = 0;
    /** Code 1322 (param1, param2). */
    virtual void onGeneralCommand(int param1, int param2) = 0;
    /** Code 1032: its param1 and its code. */
    virtual void onHDRadioEvent(int param1, int code) = 0;
};
