#pragma once

#include "Message/AppMessage.h"

/** What the HDMI input hears from the main service, through HDMIApi. Called on the message
    thread; bound by raw pointer and never owned. */
class HDMICallBack
{
public:
    virtual ~HDMICallBack() = default;

    /** Code 2425 (param1, param2). */
    virtual void onHDMISignal(int param1, int param2) = 0;
    /** Code 1322 (param1, param2). */
    virtual void onGeneralCommand(int param1, int param2) = 0;
    /** Code 1224 (param1, param2); the message then goes on to the common dispatch. */
    virtual void onHDMIState(int param1, int param2) = 0;
};
