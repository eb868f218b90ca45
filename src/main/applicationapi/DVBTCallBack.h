#pragma once

#include "Message/AppMessage.h"

/** What the DVB-T receiver hears from the main service, through DVBTApi. Called on the message
    thread; bound by raw pointer and never owned. */
class DVBTCallBack
{
public:
    virtual ~DVBTCallBack() = default;

    /** Code 1195 (param1, param2). */
    virtual void onGeneralNotify(int param1, int param2) = 0;
    /** Code 1203; DVBTApi answers power-off ready (1204) right after. */
    virtual void onPowerOff(int param1) = 0;
    /** Never called: code 1181, which it was meant for, is swallowed by DVBTApi. */
    virtual void onDVBTMessage(const AppMessage::Ptr& message, int code) = 0;
    /** Code 1322 (param1, param2). */
    virtual void onGeneralCommand(int param1, int param2) = 0;
};
