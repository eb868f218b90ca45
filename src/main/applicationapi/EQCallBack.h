#pragma once

#include "Message/AppMessage.h"

/** What the equalizer hears from the main service, through EQApi. Called on the message thread;
    bound by raw pointer and never owned. */
class EQCallBack
{
public:
    virtual ~EQCallBack() = default;

    /** Code 1322 (param1, param2). */
    virtual void onGeneralCommand(int param1, int param2) = 0;
};
