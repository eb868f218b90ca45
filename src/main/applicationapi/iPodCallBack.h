#pragma once

#include "Message/AppMessage.h"

/** What the iPod player hears from the main service, through iPodApi. Called on the message
    thread; bound by raw pointer and never owned. */
class iPodCallBack
{
public:
    virtual ~iPodCallBack() = default;

    /** The own codes 1176, 1578, 1634, 1636, 1639, 1912, 2525 and 48654: the message as it came, its code. */
    virtual void oniPodMessage(const AppMessage::Ptr& message, int code) = 0;
    /** Code 1195 (param1, param2). */
    virtual void onGeneralNotify(int param1, int param2) = 0;
    /** Code 1203; iPodApi answers power-off ready (1204) right after. */
    virtual void onPowerOff(int param1) = 0;
    /** Code 1202 (true when its param1 is not 0). */
    virtual void onStateChanged(bool state) = 0;
    /** Code 1322 (param1, param2). */
    virtual void onGeneralCommand(int param1, int param2) = 0;
};
