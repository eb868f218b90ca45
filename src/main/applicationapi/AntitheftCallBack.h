#pragma once

#include "Message/AppMessage.h"

/** What the anti-theft application hears from the main service, through AntitheftApi. Called on
    the message thread; bound by raw pointer and never owned. */
class AntitheftCallBack
{
public:
    virtual ~AntitheftCallBack() = default;

    /** Code 1322 (param1, param2). */
    virtual void onGeneralCommand(int param1, int param2) = 0;
};
