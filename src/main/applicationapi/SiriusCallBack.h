#pragma once

#include "Message/AppMessage.h"

/** What the satellite radio hears from the main service, through SiriusApi. Called on the
    message thread; bound by raw pointer and never owned. */
class SiriusCallBack
{
public:
    virtual ~SiriusCallBack() = default;

    /** The own codes 1180 and 1636: the message as it came, its code. */
    virtual void onSiriusMessage(const AppMessage::Ptr& message, int code) = 0;
    /** Code 1195 (param1, param2). */
    virtual void onGeneralNotify(int param1, int param2) = 0;
    /** Code 1203; SiriusApi answers power-off ready (1204) right after. */
    virtual void onPowerOff(int param1) = 0;
    /** Code 1322 (param1, param2). */
    virtual void onGeneralCommand(int param1, int param2) = 0;
    /** Code 1194 (param1). */
    virtual void onGeneralEvent(int param1) = 0;
};
