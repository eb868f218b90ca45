#pragma once

#include "Message/AppMessage.h"

/** What the radar application hears from the main service, through RadarApi. Called on the
    message thread; bound by raw pointer and never owned. */
class RadarCallBack
{
public:
    virtual ~RadarCallBack() = default;

    /** Code 1322 (param1, param2). */
    virtual void onGeneralCommand(int param1, int param2) = 0;
};
